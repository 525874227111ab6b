#include "particles/Colliders.h"

#include <algorithm>

#include <zor/RigidBody.h>

#include "bullet/CompoundImpl.h"
#include "bullet/Conversions.h"
#include "bullet/GeometryImpl.h"
#include "bullet/SpaceImpl.h"

namespace zorParticles {

namespace {

btVector3 limited(btVector3 const& v, double most) {
  double const length = v.length();
  return length > most ? v * (most / length) : v;
}

bool isWanted(zorBullet::GeometryImpl const& geometry, Colliders::Query const& query) {
  if (!geometry.enabled || !geometry.collisions)
    return false;
  for (zor::UInt32 const group : geometry.groups)
    for (zor::UInt32 const other : query.groups)
      if (!query.space.getEnablePair(group, other))
        return false;
  return true;
}

} // namespace

void Colliders::collect(Query const& query, std::vector<zor::ref_ptr<zor::Material>>& materials) {
  m_colliders.swap(m_previous);
  m_colliders.clear();
  m_bodies.clear();
  m_bodyIndex.clear();
  for (auto const& geometry : query.space.space().getGeometries()) {
    zorBullet::GeometryImpl& impl = geometry->getImpl();
    zor::RigidBody* const body = geometry->getRigidBody();
    if (!isWanted(impl, query) || (body && !body->getEnable()))
      continue;
    Collider like;
    like.geometry = geometry.get();
    like.sensor = impl.sensor;
    btTransform frame = impl.worldTransform();
    if (body) {
      zorBullet::BodyImpl& owner = body->getImpl();
      frame =
          owner.modelTransform() * impl.localTransform(); // the frame is brought up to date after the step
      like.solid = owner.movesByForces();
      like.velocity = owner.engine().getLinearVelocity();
      like.spin = owner.engine().getAngularVelocity();
      like.center = owner.engine().getWorldTransform().getOrigin();
    }
    uint32_t part = 0;
    size_t const before = m_colliders.size();
    for (size_t i = 0; i < impl.locals.size(); ++i)
      add(impl, geometry->getShape(i)->getImpl(), frame * impl.locals[i], query, part, like);
    if (m_colliders.size() == before)
      continue;
    uint32_t const material = materialOf(impl.material.get(), materials);
    uint32_t const pushed = body && like.solid && !impl.sensor ? bodyOf(body->getImpl(), query.dt) : NONE;
    for (size_t i = before; i < m_colliders.size(); ++i) {
      m_colliders[i].material = material;
      m_colliders[i].body = pushed;
    }
  }
  // The same shapes mostly come in the same order.
  size_t at = 0;
  for (Collider& collider : m_colliders)
    for (size_t tried = 0; tried < m_previous.size(); ++tried, ++at) {
      Collider const& previous = m_previous[at % m_previous.size()];
      if (previous.geometry == collider.geometry && previous.part == collider.part) {
        collider.previous = static_cast<uint32_t>(at++ % m_previous.size());
        break;
      }
    }
}

void Colliders::add(zorBullet::GeometryImpl& geometry, zorBullet::ShapeImpl const& shape,
                    btTransform const& frame, Query const& query, uint32_t& part, Collider const& like) {
  if (auto const* compound = dynamic_cast<zorBullet::CompoundImpl const*>(&shape)) {
    for (auto const& child : compound->children())
      add(geometry, child.shape->getImpl(), frame * child.local, query, part, like);
    return;
  }
  Collider collider = like;
  collider.part = part++;
  collider.shape = &shape;
  shape.bounds(frame, collider.lower, collider.upper);
  btVector3 arm = (collider.upper - like.center).absolute();
  arm.setMax((like.center - collider.lower).absolute());
  collider.speed = like.velocity.length() + (like.spin.fuzzyZero() ? 0.0 : like.spin.length() * arm.length());
  btVector3 const reach = btVector3(1, 1, 1) * (collider.speed * query.dt);
  collider.lower -= reach;
  collider.upper += reach;
  for (int axis = 0; axis < 3; ++axis)
    if (collider.lower[axis] > query.upper[axis] || collider.upper[axis] < query.lower[axis])
      return;
  collider.frame = frame;
  collider.inverse = frame.inverse();
  m_colliders.push_back(collider);
}

uint32_t Colliders::materialOf(zor::Material* material, std::vector<zor::ref_ptr<zor::Material>>& materials) {
  auto const at = std::find_if(materials.begin(), materials.end(),
                               [material](auto const& each) { return each.get() == material; });
  if (at != materials.end())
    return static_cast<uint32_t>(at - materials.begin());
  materials.push_back(material);
  return static_cast<uint32_t>(materials.size() - 1);
}

/**
 * The engine that holds a body by contacts and joints comes after the particles. What it did in the last step
 * is taken as given: else a plate on posts would fall away under the particles and be put back each time.
 * Only as much as the body's load is, as a blow is no support.
 */
uint32_t Colliders::bodyOf(zorBullet::BodyImpl& body, double dt) {
  auto const [at, isNew] = m_bodyIndex.try_emplace(&body, static_cast<uint32_t>(m_bodies.size()));
  if (!isNew)
    return at->second;
  btRigidBody const& engine = body.engine();
  PushedBody pushed;
  pushed.body = &body;
  pushed.velocity = engine.getLinearVelocity();
  pushed.spin = engine.getAngularVelocity();
  pushed.center = engine.getWorldTransform().getOrigin();
  pushed.inverseMass = engine.getInvMass();
  pushed.inverseInertia = engine.getInvInertiaTensorWorld();
  pushed.acceleration = engine.getTotalForce() * pushed.inverseMass;
  pushed.twisting = pushed.inverseInertia * engine.getTotalTorque();
  if (auto const known = m_expected.find(&body); known != m_expected.end()) {
    Expected const& expected = known->second;
    pushed.acceleration += limited(pushed.velocity - expected.velocity, expected.load.length()) / dt;
    pushed.twisting += limited(pushed.spin - expected.spin, expected.twist.length()) / dt;
  }
  m_bodies.push_back(pushed);
  return at->second;
}

void Colliders::advance(double dt) {
  for (size_t i = 0; i < m_colliders.size(); ++i) {
    Collider& collider = m_colliders[i];
    collider.previous = static_cast<uint32_t>(i);
    bool const isPushed = collider.body != NONE;
    if (!isPushed && collider.speed == 0)
      continue;
    PushedBody const* const body = isPushed ? &m_bodies[collider.body] : nullptr;
    btVector3 const way = body ? body->moved : collider.velocity * dt;
    btVector3 const turn = body ? body->turned : collider.spin * dt;
    double const angle = turn.length();
    btTransform motion(angle > 0 ? btQuaternion(turn / angle, angle) : btQuaternion::getIdentity(),
                       btVector3(0, 0, 0));
    motion.setOrigin(collider.center + way - motion.getBasis() * collider.center);
    collider.frame = motion * collider.frame;
    collider.inverse = collider.frame.inverse();
    collider.center += way;
    if (body) {
      collider.velocity = body->velocity;
      collider.spin = body->spin;
    }
  }
  for (PushedBody& body : m_bodies) {
    body.center += body.moved;
    body.moved = body.turned = btVector3(0, 0, 0);
  }
}

void Colliders::pushBodies(double dt) {
  m_expected.clear();
  for (PushedBody& pushed : m_bodies) {
    if (!pushed.touched)
      continue;
    btRigidBody& engine = pushed.body->engine();
    Expected expected;
    expected.body = pushed.body->getBody();
    expected.load = pushed.pushed + engine.getTotalForce() * pushed.inverseMass * dt;
    expected.twist = pushed.twisted + pushed.inverseInertia * engine.getTotalTorque() * dt;
    expected.velocity = engine.getLinearVelocity() + expected.load;
    expected.spin = engine.getAngularVelocity() + expected.twist;
    m_expected.emplace(pushed.body, expected);
    pushed.body->wake();
    engine.setLinearVelocity(engine.getLinearVelocity() + pushed.pushed);
    engine.setAngularVelocity(engine.getAngularVelocity() + pushed.twisted);
  }
}

void Colliders::remember(EngineMemory& memory) const {
  for (Collider const& collider : m_colliders)
    memory.colliders.push_back({collider.geometry, collider.part});
  for (auto const& [body, expected] : m_expected)
    memory.expected.push_back(
        {expected.body.get(), expected.velocity, expected.spin, expected.load, expected.twist});
}

// Of the last step's colliders only the names are needed.
void Colliders::restore(EngineMemory const& memory) {
  m_colliders.clear();
  m_expected.clear();
  for (EngineMemory::Part const& part : memory.colliders) {
    Collider collider;
    collider.geometry = part.geometry;
    collider.part = part.part;
    m_colliders.push_back(collider);
  }
  for (EngineMemory::Expected const& each : memory.expected)
    m_expected.emplace(&each.body->getImpl(),
                       Expected{each.body, each.velocity, each.spin, each.load, each.twist});
}

} // namespace zorParticles
