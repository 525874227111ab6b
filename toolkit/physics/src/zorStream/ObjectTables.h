#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include <zor/Constraint.h>
#include <zor/ContactMaterial.h>
#include <zor/EmitterBase.h>
#include <zor/Frame.h>
#include <zor/Material.h>
#include <zor/ObserverFrame.h>
#include <zor/ParticleDistribution.h>
#include <zor/ParticleSystem.h>
#include <zor/RigidBody.h>
#include <zor/RigidBodyDistribution.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/Shape.h>
#include <zorRender/RenderData.h>
#include <zorRender/RenderMaterial.h>
#include <zorSDK/Assembly.h>

#include "zorStream/Archive.h"

namespace zorBullet {
class GeometryImpl;
}

namespace zorStream {

/** The objects of one kind in a file, each with its number, by which others refer to it. */
template <class T>
class ObjectTable {
public:
  explicit ObjectTable(char const* noun) : m_noun(noun) {}

  char const* noun() const { return m_noun; }
  std::vector<zor::ref_ptr<T>> const& objects() const { return m_objects; }
  bool contains(T const& object) const { return m_ids.contains(&object); }

  /** Writing: gives an object the next number. \return false if it has one */
  bool add(T& object) { return insert(m_objects.size(), object); }
  std::uint64_t idOf(T const& object) const { return m_ids.at(&object); }

  /** Reading: \return false if the number is taken */
  bool insert(std::uint64_t id, T& object) {
    if (m_ids.contains(&object) || !m_byId.try_emplace(id, &object).second)
      return false;
    m_ids[&object] = id;
    m_objects.push_back(&object);
    return true;
  }

  T* find(std::uint64_t id) const {
    auto const at = m_byId.find(id);
    return at == m_byId.end() ? nullptr : at->second;
  }

private:
  char const* m_noun;
  std::vector<zor::ref_ptr<T>> m_objects;
  std::unordered_map<T const*, std::uint64_t> m_ids;
  std::unordered_map<std::uint64_t, T*> m_byId;
};

/** All objects of a file. What is referred to stands before what refers to it. */
struct ObjectTables {
  ObjectTable<zor::Material> materials{"material"};
  ObjectTable<zor::ContactMaterial> contactMaterials{"contact material"};
  ObjectTable<zorRender::RenderMaterial> renderMaterials{"render material"};
  ObjectTable<zorRender::RenderData> renderData{"render data"};
  ObjectTable<zorCollide::Shape> shapes{"shape"};
  ObjectTable<zorCollide::Geometry> geometries{"geometry"};
  ObjectTable<zor::RigidBody> bodies{"body"};
  ObjectTable<zor::Constraint> constraints{"constraint"};
  ObjectTable<zor::ObserverFrame> observerFrames{"observer frame"};
  ObjectTable<zorSDK::Assembly> assemblies{"assembly"};
  ObjectTable<zor::Frame> frames{"frame"}; // those that belong to none of the others
  ObjectTable<zor::ParticleModel> particleModels{"particle model"};
  ObjectTable<zor::ParticleDistribution> particleDistributions{"particle distribution"};
  ObjectTable<zor::RigidBodyDistribution> bodyDistributions{"body distribution"};
  ObjectTable<zor::ParticleSystem> particleSystems{"particle system"};
  ObjectTable<zor::EmitterBase> emitters{"emitter"};

  /** What frames are called as parents of others, such as "body 3". */
  std::map<zor::Frame const*, std::string> frameNames;

  /** Parents that are set once all frames are there. */
  struct PendingParent {
    zor::ref_ptr<zor::Frame> frame;
    zorBullet::GeometryImpl* geometry; // whose frame it is, or null
    std::string parent;
    std::string place; // of the field, for messages
  };
  std::vector<PendingParent> pendingParents;
};

} // namespace zorStream
