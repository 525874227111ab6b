#include "bullet/BodyImpl.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <zor/Notify.h>
#include <zorCollide/Space.h>

#include "bullet/Conversions.h"
#include "bullet/SpaceImpl.h"
#include "zor/Checks.h"

namespace zorBullet {

namespace {

constexpr double SLEEP_SPEED = 0.05;       // m/s
constexpr double SLEEP_SPIN = 0.1;         // rad/s
constexpr double MIN_INERTIA_RATIO = 1e-6; // thinner bodies make the solver's numbers useless

bool isFinite(btVector3 const& v) {
  return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

bool isIdentity(btTransform const& t) {
  btTransform const& identity = btTransform::getIdentity();
  if (t.getOrigin().length2() > 1e-24)
    return false;
  for (int i = 0; i < 3; ++i)
    if ((t.getBasis()[i] - identity.getBasis()[i]).length2() > 1e-24)
      return false;
  return true;
}

bool isDiagonal(btMatrix3x3 const& m) {
  double const largest = std::max({m[0][0], m[1][1], m[2][2]});
  return std::max({std::abs(m[0][1]), std::abs(m[0][2]), std::abs(m[1][2])}) <= 1e-9 * largest;
}

btRigidBody::btRigidBodyConstructionInfo startInfo(btCollisionShape& shape) {
  btRigidBody::btRigidBodyConstructionInfo info(1.0, nullptr, &shape, btVector3(1, 1, 1));
  info.m_linearSleepingThreshold = SLEEP_SPEED;
  info.m_angularSleepingThreshold = SLEEP_SPIN;
  return info;
}

} // namespace

BodyImpl::BodyImpl(zor::RigidBody& body)
    : m_body(body), m_frame(new zor::Frame), m_engine(startInfo(m_noShape)), m_mass(*this),
      m_principal(btTransform::getIdentity()), m_principalInverse(btTransform::getIdentity()) {
  m_worldObject.body = &body;
  m_worldObject.attachTo(m_engine);
  m_engine.forceActivationState(DISABLE_DEACTIVATION);
  m_engine.setFlags(0); // no gyroscopic force of the engine's own: see FreeRotation
}

BodyImpl::~BodyImpl() {
  leaveWorld();
  for (auto const& geometry : m_geometries)
    geometry->getImpl().detach();
}

// --- geometries and mass

bool BodyImpl::addGeometry(zorCollide::Geometry& geometry, zor::AffineMatrix4x4 const& local) {
  GeometryImpl& impl = geometry.getImpl();
  if (impl.owner() || impl.space()) {
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "RigidBody::add: geometry '" << geometry.getName() << "' is already part of "
        << (impl.owner() ? "a body" : "a simulation") << ", nothing is changed" << zor::endMessage;
    return false;
  }
  impl.leaves(isDynamic()); // throws for shapes that this body cannot have, before anything is changed
  m_geometries.push_back(&geometry);
  impl.attach(*this, m_frame.get(), local);
  computeMass();
  if (m_space)
    m_space->space().add(&geometry);
  return true;
}

bool BodyImpl::removeGeometry(zorCollide::Geometry& geometry) {
  auto const at = std::find_if(m_geometries.begin(), m_geometries.end(),
                               [&](auto const& held) { return held.get() == &geometry; });
  if (at == m_geometries.end())
    return false;
  zor::ref_ptr<zorCollide::Geometry> const keep = &geometry;
  m_geometries.erase(at);
  computeMass(); // the shape lets go of the geometry's leaves
  if (m_space)
    m_space->space().remove(&geometry);
  geometry.getImpl().detach();
  return true;
}

void BodyImpl::onGeometryChanged(GeometryImpl& geometry) {
  bool const held = std::any_of(m_geometries.begin(), m_geometries.end(),
                                [&](auto const& other) { return &other->getImpl() == &geometry; });
  if (held)
    computeMass();
}

MassData BodyImpl::shapeMass() const {
  MassData total;
  for (auto const& geometry : m_geometries) {
    GeometryImpl& impl = geometry->getImpl();
    if (impl.isSolid())
      total.add(impl.massData().transformed(impl.localTransform()));
  }
  return total;
}

void BodyImpl::computeMass() {
  using zor::MassProperties;
  MassData const shapes = shapeMass();
  bool const solid = shapes.mass > 0;
  if (m_mass.m_autoMask & MassProperties::MASS)
    m_mass.m_mass = solid ? shapes.mass : 1.0;
  if (m_mass.m_autoMask & MassProperties::CM_OFFSET)
    m_mass.m_centre = solid ? fromBt(shapes.center) : zor::Vec3();
  double const scale = solid ? m_mass.m_mass / shapes.mass : m_mass.m_mass;
  btMatrix3x3 const inertia = solid ? shapes.inertia : btMatrix3x3::getIdentity();
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column) {
      auto const bit = row == column ? MassProperties::INERTIA_DIAGONAL : MassProperties::INERTIA_OFFDIAGONAL;
      if (m_mass.m_autoMask & bit)
        m_mass.m_inertia(static_cast<size_t>(row), static_cast<size_t>(column)) =
            inertia[row][column] * scale;
    }
  applyMass();
}

// Axes in which the inertia is diagonal; those of the model frame or of a lone shape where they serve, so
// that the shape can stand in the engine's frame without a compound. Makes the inertia diagonal.
btMatrix3x3 BodyImpl::principalAxes(btMatrix3x3& inertia) const {
  if (isDiagonal(inertia))
    return btMatrix3x3::getIdentity();
  if (m_geometries.size() == 1) {
    GeometryImpl& impl = m_geometries[0]->getImpl();
    auto const leaves = impl.leaves(isDynamic());
    if (leaves->size() == 1) {
      btMatrix3x3 const axes = (impl.localTransform() * leaves->front().local).getBasis();
      btMatrix3x3 const turned = axes.transpose() * inertia * axes;
      if (isDiagonal(turned)) {
        inertia = turned;
        return axes;
      }
    }
  }
  btMatrix3x3 const original = inertia;
  btMatrix3x3 axes;
  inertia.diagonalize(axes, 1e-12, 100);
  if (axes.determinant() < 0)
    axes = axes * btMatrix3x3(-1, 0, 0, 0, -1, 0, 0, 0, -1);
  inertia = axes.transpose() * original * axes;
  return axes;
}

void BodyImpl::applyMass() {
  btTransform const model = modelTransform();
  btMatrix3x3 inertia = toBt(zor::AffineMatrix4x4(m_mass.m_inertia, zor::Vec3())).getBasis();
  btMatrix3x3 const axes = principalAxes(inertia);
  m_principal = btTransform(axes, toBt(m_mass.m_centre));
  m_principalInverse = m_principal.inverse();
  m_principalIsModel = m_principal == btTransform::getIdentity();

  btVector3 diagonal(inertia[0][0], inertia[1][1], inertia[2][2]);
  double const least = std::max({diagonal.x(), diagonal.y(), diagonal.z()}) * MIN_INERTIA_RATIO;
  diagonal.setMax(btVector3(least, least, least));

  bool const was = m_inWorld;
  if (was)
    leaveWorld();
  rebuildShape();
  if (movesByForces())
    m_engine.setMassProps(m_mass.m_mass, diagonal);
  else
    m_engine.setMassProps(0, btVector3(0, 0, 0));
  applyFlags();
  m_engine.setCenterOfMassTransform(model * m_principal);
  sweepRadius();
  if (was)
    enterWorld();
}

void BodyImpl::rebuildShape() {
  std::vector<std::shared_ptr<LeafSet const>> sets;
  std::vector<std::pair<btTransform, btCollisionShape*>> parts;
  m_worldObject.geometries.clear();
  for (auto const& geometry : m_geometries) {
    GeometryImpl& impl = geometry->getImpl();
    if (!impl.isSolid())
      continue;
    m_worldObject.geometries.push_back(&impl);
    sets.push_back(impl.leaves(isDynamic()));
    btTransform const place = m_principalInverse * impl.localTransform();
    for (Leaf const& leaf : *sets.back())
      parts.emplace_back(place * leaf.local, leaf.shape.get());
  }
  std::unique_ptr<btCollisionShape> own;
  btCollisionShape* shape = &m_noShape;
  if (parts.size() == 1 && isIdentity(parts[0].first)) {
    shape = parts[0].second;
  } else if (!parts.empty()) {
    auto compound = std::make_unique<btCompoundShape>(true, static_cast<int>(parts.size()));
    for (auto const& [local, part] : parts)
      compound->addChildShape(local, part);
    own = std::move(compound);
    shape = own.get();
  }
  m_engine.setCollisionShape(shape);
  m_shape = std::move(own); // only now: the engine has let go of the old one
  m_leaves = std::move(sets);
}

void BodyImpl::applyFlags() {
  int flags = m_engine.getCollisionFlags() &
              ~(btCollisionObject::CF_STATIC_OBJECT | btCollisionObject::CF_KINEMATIC_OBJECT);
  if (m_control == zor::RigidBody::STATIC)
    flags |= btCollisionObject::CF_STATIC_OBJECT;
  if (m_control == zor::RigidBody::KINEMATICS)
    flags |= btCollisionObject::CF_KINEMATIC_OBJECT;
  m_engine.setCollisionFlags(flags);
}

void BodyImpl::sweepRadius() {
  btVector3 lower, upper;
  m_engine.getCollisionShape()->getAabb(btTransform::getIdentity(), lower, upper);
  btVector3 const half = (upper - lower) * 0.5;
  double const least = half[half.minAxis()];
  m_engine.setCcdMotionThreshold(m_continuous ? 0.5 * least : 0.0);
  m_engine.setCcdSweptSphereRadius(m_continuous ? 0.4 * least : 0.0);
}

// --- settings

void BodyImpl::setControl(zor::RigidBody::MotionControl control) {
  if (control == m_control)
    return;
  for (auto const& geometry : m_geometries)
    geometry->getImpl().leaves(control == zor::RigidBody::DYNAMICS); // throws before anything is changed
  m_control = control;
  m_move.reset();
  if (control == zor::RigidBody::STATIC) {
    m_engine.setLinearVelocity(btVector3(0, 0, 0));
    m_engine.setAngularVelocity(btVector3(0, 0, 0));
  }
  m_engine.clearForces();
  m_engine.forceActivationState(DISABLE_DEACTIVATION);
  applyMass();
  wakeTouching();
}

void BodyImpl::setEnable(bool enable) {
  if (enable == m_enabled)
    return;
  m_enabled = enable;
  if (!enable)
    leaveWorld();
  else if (m_space)
    enterWorld();
}

void BodyImpl::setAutoSleep(bool enable) {
  m_autoSleep = enable;
  if (!enable)
    wake();
}

void BodyImpl::setContinuous(bool enable) {
  m_continuous = enable;
  sweepRadius();
}

void BodyImpl::setDamping(double linear, double angular) {
  m_linearDamping = linear;
  m_angularDamping = angular;
  // The engine multiplies velocities by (1 - d)^dt.
  m_engine.setDamping(1 - std::exp(-linear), 1 - std::exp(-angular));
}

// --- motion

btTransform BodyImpl::cmInModel() const {
  return btTransform(btMatrix3x3::getIdentity(), m_principal.getOrigin());
}

void BodyImpl::setModelTransform(btTransform const& transform) {
  m_move.reset();
  wakeTouching();
  m_engine.setCenterOfMassTransform(transform * m_principal);
  m_engine.setInterpolationWorldTransform(m_engine.getWorldTransform());
  if (m_inWorld)
    m_space->world().updateSingleAabb(&m_engine);
  wake();
}

void BodyImpl::setVelocities(btVector3 const& linear, btVector3 const& angular) {
  if (m_control == zor::RigidBody::STATIC)
    return;
  m_move.reset();
  m_engine.setLinearVelocity(linear);
  m_engine.setAngularVelocity(angular);
  wake();
}

void BodyImpl::moveTo(btTransform const& transform, double duration) {
  m_move = Move{transform, duration};
  wake();
}

// Constant speed and spin from here to the target, of which the step does its part.
void BodyImpl::aimAtTarget(double dt) {
  double const left = std::max(m_move->left, dt);
  btTransform const& here = m_engine.getWorldTransform();
  btTransform const there = m_move->target * m_principal;
  btQuaternion turn = there.getRotation() * here.getRotation().inverse();
  if (turn.w() < 0) // the shorter way round
    turn = -turn;
  btVector3 const axis(turn.x(), turn.y(), turn.z());
  double const sine = axis.length();
  double const angle = 2 * std::atan2(sine, turn.w());
  m_engine.setLinearVelocity((there.getOrigin() - here.getOrigin()) / left);
  m_engine.setAngularVelocity(sine > 1e-12 ? axis * (angle / (sine * left)) : btVector3(0, 0, 0));
}

void BodyImpl::arriveAtTarget(double dt) {
  m_move->left -= dt;
  if (m_move->left > 1e-6 * dt)
    return;
  m_engine.setCenterOfMassTransform(m_move->target * m_principal);
  m_engine.setLinearVelocity(btVector3(0, 0, 0));
  m_engine.setAngularVelocity(btVector3(0, 0, 0));
  m_move.reset();
}

void BodyImpl::wake() {
  if (m_control != zor::RigidBody::STATIC && !m_engine.isActive()) {
    m_engine.forceActivationState(ACTIVE_TAG);
    m_engine.setDeactivationTime(0);
  }
}

void BodyImpl::sleep() {
  if (!movesByForces())
    return;
  m_engine.setLinearVelocity(btVector3(0, 0, 0));
  m_engine.setAngularVelocity(btVector3(0, 0, 0));
  m_engine.forceActivationState(ISLAND_SLEEPING);
}

void BodyImpl::wakeTouching() {
  if (!m_inWorld)
    return;
  btDispatcher* dispatcher = m_space->world().getDispatcher();
  for (int i = 0; i < dispatcher->getNumManifolds(); ++i) {
    btPersistentManifold const* manifold = dispatcher->getManifoldByIndexInternal(i);
    auto const* a = manifold->getBody0();
    auto const* b = manifold->getBody1();
    if (a != &m_engine && b != &m_engine)
      continue;
    WorldObject const* other = WorldObject::of(a == &m_engine ? *b : *a);
    if (other && other->body)
      other->body->getImpl().wake();
  }
}

// --- simulation

void BodyImpl::enter(zorSDK::Simulation* simulation, SpaceImpl& space) {
  m_simulation = simulation;
  m_space = &space;
  if (m_enabled)
    enterWorld();
  for (auto const& geometry : m_geometries)
    space.space().add(geometry.get());
}

void BodyImpl::leave() {
  for (auto const& geometry : m_geometries)
    m_space->space().remove(geometry.get());
  leaveWorld();
  m_simulation = nullptr;
  m_space = nullptr;
}

void BodyImpl::enterWorld() {
  m_space->world().addRigidBody(&m_engine);
  m_inWorld = true;
}

void BodyImpl::leaveWorld() {
  if (!m_inWorld)
    return;
  wakeTouching();
  m_space->world().removeRigidBody(&m_engine);
  m_inWorld = false;
}

void BodyImpl::beforeStep(bool autoSleep, double dt) {
  if (m_move)
    aimAtTarget(dt);
  m_oldVelocity = m_engine.getLinearVelocity();
  m_oldAngularVelocity = m_engine.getAngularVelocity();
  m_wasActive = m_engine.isActive();
  int const state = m_engine.getActivationState();
  if (m_control == zor::RigidBody::KINEMATICS) {
    bool const moves = m_oldVelocity.length2() > 0 || m_oldAngularVelocity.length2() > 0;
    m_engine.forceActivationState(moves ? DISABLE_DEACTIVATION : ISLAND_SLEEPING);
  } else if (movesByForces()) {
    bool const maySleep = autoSleep && m_autoSleep;
    if (maySleep && state == DISABLE_DEACTIVATION) {
      m_engine.forceActivationState(ACTIVE_TAG);
      m_engine.setDeactivationTime(0);
    } else if (!maySleep && (state == ACTIVE_TAG || state == WANTS_DEACTIVATION)) {
      m_engine.forceActivationState(DISABLE_DEACTIVATION);
    }
  }
}

void BodyImpl::advanceKinematics(double dt) {
  if (m_control != zor::RigidBody::KINEMATICS || !m_inWorld || !m_engine.isActive())
    return;
  btTransform moved;
  m_engine.predictIntegratedTransform(dt, moved);
  m_engine.setCenterOfMassTransform(moved);
}

void BodyImpl::afterStep(double dt) {
  m_acceleration = (m_engine.getLinearVelocity() - m_oldVelocity) / dt;
  m_angularAcceleration = (m_engine.getAngularVelocity() - m_oldAngularVelocity) / dt;
  if (m_move)
    arriveAtTarget(dt);
}

bool BodyImpl::synchronise() {
  bool const moved = m_wasActive || m_engine.isActive(); // it moves in the step that puts it to sleep, too
  if (!m_inWorld || m_control == zor::RigidBody::STATIC || !moved)
    return true;
  btTransform const& pose = m_engine.getWorldTransform();
  bool const finite = isFinite(pose.getOrigin()) && isFinite(pose.getBasis()[0]) &&
                      isFinite(pose.getBasis()[1]) && isFinite(pose.getBasis()[2]) &&
                      isFinite(m_engine.getLinearVelocity()) && isFinite(m_engine.getAngularVelocity());
  if (finite) {
    m_frame->setLocalMatrix(fromBt(modelTransform()));
    return true;
  }
  m_engine.clearForces();
  m_engine.setLinearVelocity(btVector3(0, 0, 0));
  m_engine.setAngularVelocity(btVector3(0, 0, 0));
  setModelTransform(toBt(m_frame->getLocalMatrix()));
  return false;
}

} // namespace zorBullet
