#pragma once

#include <limits>
#include <vector>

#include <zor/Material.h>
#include <zor/ParticleContacts.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

#include "particles/Engine.h"
#include "particles/ParticleStore.h"

namespace zorStream {
struct StateAccess;
}

namespace zorParticles {

/** What a particle system holds, and its step. */
class ParticleSystemImpl {
public:
  ParticleSystemImpl();

  /** Does not check. \return the index */
  zor::UInt add(zor::Vec3 const& position, double radius, zor::Vec3 const& velocity, uint32_t materialIndex);
  /** \param keep - gets the index of a particle \return how many were removed */
  template <class Keep>
  zor::UInt removeUnless(Keep keep);
  void clear();

  /** \param wanted - null for the default material */
  void setMaterial(zor::Material* wanted);
  template <class Visit>
  void forEnabled(Visit visit) const {
    for (size_t i = 0; i < store.size(); ++i)
      if (store.enabled[i])
        visit(i);
  }

  /** Place of a material in the list. */
  uint32_t indexOf(zor::Material& material);
  double massOf(double radius, uint32_t materialIndex) const;

  /** \return false if the step left particles out, as their numbers aren't finite */
  bool step(double dt, zor::Vec3 const& gravity, zorBullet::SpaceImpl& space);
  zor::ParticleContacts contacts() const;
  zor::UInt numContacts() const;

  ParticleStore store;
  std::vector<zor::ref_ptr<zor::Material>> materials; // those in use by a particle come first to be found
  zor::ref_ptr<zor::Material> material;
  zor::Vec4f color{0.82f, 0.71f, 0.55f, 1};
  zor::UInt32Vector groups;
  double rollingResistance = 0;
  uint32_t subSteps = 4;
  uint32_t threads = 2;
  bool enabled = true;

private:
  friend struct zorStream::StateAccess;

  zor::UInt removeMarked();
  void age(double dt);

  Engine m_engine;
  uint64_t m_nextId = 0;
  std::vector<uint32_t> m_places; // scratch of a removal
};

template <class Keep>
zor::UInt ParticleSystemImpl::removeUnless(Keep keep) {
  m_places.resize(store.size());
  uint32_t kept = 0;
  for (size_t i = 0; i < store.size(); ++i)
    m_places[i] = keep(i) ? kept++ : NONE;
  return removeMarked();
}

} // namespace zorParticles
