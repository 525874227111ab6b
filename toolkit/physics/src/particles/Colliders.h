#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include <LinearMath/btMatrix3x3.h>
#include <LinearMath/btTransform.h>

#include <zor/Material.h>
#include <zor/RigidBody.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>

#include "bullet/BodyImpl.h"
#include "bullet/ShapeImpl.h"
#include "particles/Contacts.h"
#include "particles/EngineMemory.h"

namespace zorBullet {
class SpaceImpl;
}

namespace zorParticles {

/** A shape that particles may meet. */
struct Collider {
  zorCollide::Geometry* geometry = nullptr;
  zorBullet::ShapeImpl const* shape = nullptr;
  uint32_t part = 0; // of the geometry
  btTransform frame = btTransform::getIdentity();
  btTransform inverse = btTransform::getIdentity();
  btVector3 lower{0, 0, 0}, upper{0, 0, 0};
  bool solid = false; // in a dynamic body, in which a mesh is solid
  bool sensor = false;
  uint32_t body = NONE;        // in the list of bodies
  uint32_t previous = NONE;    // the same shape in the last step
  uint32_t material = 0;       // place in the list of materials
  btVector3 velocity{0, 0, 0}; // of a body that is moved
  btVector3 spin{0, 0, 0};
  btVector3 center{0, 0, 0};
  double speed = 0; // upper bound at the surface

  btVector3 velocityAt(btVector3 const& point) const { return velocity + spin.cross(point - center); }
};

/** A body that particles push. */
struct PushedBody {
  zorBullet::BodyImpl* body = nullptr;
  btVector3 velocity{0, 0, 0}, spin{0, 0, 0};         // as the sub-steps change them
  btVector3 moved{0, 0, 0}, turned{0, 0, 0};          // in this step
  btVector3 pushed{0, 0, 0}, twisted{0, 0, 0};        // change of velocity by particles
  btVector3 acceleration{0, 0, 0}, twisting{0, 0, 0}; // by everything else
  btVector3 center{0, 0, 0};
  double inverseMass = 0;
  btMatrix3x3 inverseInertia;
  bool touched = false;
};

/** The geometries of a space as particles meet them. */
class Colliders {
public:
  struct Query {
    zorBullet::SpaceImpl& space;
    zor::UInt32Vector const& groups; // of the particles
    btVector3 lower, upper;          // where particles are
    double dt;
  };

  void collect(Query const& query, std::vector<zor::ref_ptr<zor::Material>>& materials);
  /** Goes on to the next part of a step: what moves is farther on by then. */
  void advance(double dt);
  /** Gives the bodies what the particles did to them. */
  void pushBodies(double dt);

  void remember(EngineMemory& memory) const;
  void restore(EngineMemory const& memory);

  std::vector<Collider> const& all() const { return m_colliders; }
  std::vector<PushedBody>& bodies() { return m_bodies; }

private:
  // What is expected of a body, to see in the next step what else held it.
  struct Expected {
    zor::ref_ptr<zor::RigidBody> body; // held, so that no other one gets its address
    btVector3 velocity, spin;
    btVector3 load, twist; // change of velocity by particles and by forces
  };

  void add(zorBullet::GeometryImpl& geometry, zorBullet::ShapeImpl const& shape, btTransform const& frame,
           Query const& query, uint32_t& part, Collider const& like);
  uint32_t bodyOf(zorBullet::BodyImpl& body, double dt);
  static uint32_t materialOf(zor::Material* material, std::vector<zor::ref_ptr<zor::Material>>& materials);

  std::vector<Collider> m_colliders, m_previous;
  std::vector<PushedBody> m_bodies;
  std::unordered_map<zorBullet::BodyImpl const*, uint32_t> m_bodyIndex;
  std::unordered_map<zorBullet::BodyImpl const*, Expected> m_expected;
};

} // namespace zorParticles
