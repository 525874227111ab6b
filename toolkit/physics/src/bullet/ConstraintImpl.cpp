#include "bullet/ConstraintImpl.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <BulletDynamics/Dynamics/btRigidBody.h>

#include "bullet/BodyImpl.h"
#include "bullet/Conversions.h"
#include "bullet/SpaceImpl.h"
#include "zor/Checks.h"

namespace zorBullet {

namespace {

constexpr double UNBOUNDED = 1e30;
constexpr double MIN_DISTANCE = 1e-9;

// Share of a deviation that is worked off in one step, for a relaxation time.
double correction(double damping, double dt) {
  return dt / (dt + damping);
}

// What a spring of this compliance and relaxation time gives per impulse, integrated implicitly.
double springCompliance(double compliance, double damping, double dt) {
  return compliance / (dt * (dt + damping));
}

void boundImpulse(ConstraintRow& row, zor::RangeReal const& force, double dt) {
  row.lowerImpulse = std::max(force.lower() * dt, -UNBOUNDED);
  row.upperImpulse = std::min(force.upper() * dt, UNBOUNDED);
}

} // namespace

struct ConstraintImpl::Pose {
  btTransform a; // attachments in the world
  btTransform b;
  btVector3 cmA; // centres of mass
  btVector3 cmB;
  btVector3 apart; // from b's origin to a's
};

ConstraintImpl::ConstraintImpl(ConstraintKind kind, zor::RigidBody* body1, zor::RigidBody* body2)
    : m_kind(std::move(kind)) {
  if (!body1)
    throw std::invalid_argument(std::string(m_kind.name) + ": the first body is null");
  if (body1 == body2)
    throw std::invalid_argument(std::string(m_kind.name) + ": a body cannot be joined to itself");
  m_bodies = {body1, body2};
  for (int i = 0; i < 2; ++i) {
    m_attachments[static_cast<size_t>(i)] = new zor::Frame;
    if (body(i))
      attachment(i)->setParent(body(i)->getFrame());
  }
  for (ConstraintKind::Freedom const freedom : m_kind.freedoms) {
    m_freedoms.push_back({freedom, new zor::Motor1D, new zor::Range1D, new zor::Lock1D});
    for (zor::Controller1D* controller : std::initializer_list<zor::Controller1D*>{
             m_freedoms.back().motor.get(), m_freedoms.back().range.get(), m_freedoms.back().lock.get()})
      controller->m_constraint = this;
  }
  clearImpulses();
}

ConstraintImpl::~ConstraintImpl() {
  for (Freedom& freedom : m_freedoms) {
    freedom.motor->m_constraint = nullptr;
    freedom.range->m_constraint = nullptr;
    freedom.lock->m_constraint = nullptr;
  }
}

void ConstraintImpl::attach(zor::Frame* frame1, zor::Frame* frame2) {
  zor::AffineMatrix4x4 const local1 = frame1 ? frame1->getLocalMatrix() : zor::AffineMatrix4x4();
  zor::checkRigid(local1, m_kind.name);
  if (frame2)
    zor::checkRigid(frame2->getLocalMatrix(), m_kind.name);
  attachLocal(0, local1);
  if (frame2)
    attachLocal(1, frame2->getLocalMatrix());
  else
    attachment(1)->setMatrix(attachment(0)->getMatrix());
}

void ConstraintImpl::attachAt(zor::AffineMatrix4x4 const& world) {
  attachment(0)->setMatrix(world);
  attachment(1)->setMatrix(world);
}

void ConstraintImpl::attachLocal(int index, zor::AffineMatrix4x4 const& local) {
  attachment(index)->setLocalMatrix(local);
}

// --- where things are

btRigidBody& ConstraintImpl::engineBody(int index) const {
  return body(index) ? body(index)->getImpl().engine() : btTypedConstraint::getFixedBody();
}

// From the engine's pose, which is ahead of the frames inside a step.
btTransform ConstraintImpl::attachmentWorld(int index) const {
  btTransform const local = toBt(attachment(index)->getLocalMatrix());
  return body(index) ? body(index)->getImpl().modelTransform() * local : local;
}

ConstraintImpl::Pose ConstraintImpl::pose() const {
  Pose pose;
  pose.a = attachmentWorld(0);
  pose.b = attachmentWorld(1);
  pose.cmA = engineBody(0).getWorldTransform().getOrigin();
  pose.cmB = engineBody(1).getWorldTransform().getOrigin();
  pose.apart = pose.a.getOrigin() - pose.b.getOrigin();
  return pose;
}

double ConstraintImpl::wrappedPosition(Freedom const& freedom, Pose const& pose) const {
  if (freedom.kind == ConstraintKind::DISTANCE)
    return pose.apart.length();
  if (freedom.kind == ConstraintKind::TRANSLATION)
    return pose.apart.dot(pose.b.getBasis().getColumn(2));
  btVector3 const x = pose.a.getBasis().getColumn(0);
  if (freedom.kind == ConstraintKind::SPIN) { // against the second z, which it stands upright in
    btVector3 const up = pose.b.getBasis().getColumn(2), y = pose.a.getBasis().getColumn(1);
    return std::atan2(y.dot(up), y.dot(up.cross(x)));
  }
  return std::atan2(x.dot(pose.b.getBasis().getColumn(1)), x.dot(pose.b.getBasis().getColumn(0)));
}

// The angle nearest to the last one among those that differ by full turns.
double ConstraintImpl::unwrapped(Freedom const& freedom, double wrapped) const {
  if (freedom.kind != ConstraintKind::ROTATION && freedom.kind != ConstraintKind::SPIN)
    return wrapped;
  return wrapped + 2 * zor::PI * std::round((freedom.angle - wrapped) / (2 * zor::PI));
}

double ConstraintImpl::position(int index) const {
  Freedom const& f = freedom(index);
  return unwrapped(f, wrappedPosition(f, pose()));
}

double ConstraintImpl::speed(int index) const {
  ConstraintRow const row = freedomRow(freedom(index), pose());
  btRigidBody const& a = engineBody(0);
  btRigidBody const& b = engineBody(1);
  return row.linear.dot(a.getLinearVelocity() - b.getLinearVelocity()) +
         row.angularA.dot(a.getAngularVelocity()) + row.angularB.dot(b.getAngularVelocity());
}

// --- rows

ConstraintRow ConstraintImpl::freedomRow(Freedom const& freedom, Pose const& pose) const {
  ConstraintRow row;
  bool const spin = freedom.kind == ConstraintKind::SPIN;
  btVector3 const axis = spin ? pose.a.getBasis().getColumn(0) : pose.b.getBasis().getColumn(2);
  if (spin || freedom.kind == ConstraintKind::ROTATION) {
    row.linear.setZero();
    row.angularA = axis;
    row.angularB = -axis;
    return row;
  }
  row.linear = axis;
  btVector3 pointB = pose.a.getOrigin(); // the axis turns with b, so a's point counts
  if (freedom.kind == ConstraintKind::DISTANCE) {
    double const distance = pose.apart.length();
    row.linear = distance > MIN_DISTANCE ? pose.apart / distance : axis;
    pointB = pose.b.getOrigin();
  }
  row.angularA = (pose.a.getOrigin() - pose.cmA).cross(row.linear);
  row.angularB = -(pointB - pose.cmB).cross(row.linear);
  return row;
}

// Directions along and about the axes of the second attachment.
ConstraintRow ConstraintImpl::heldRow(int index, Pose const& pose, double& error) const {
  ConstraintRow row;
  if (index < m_kind.linear) {
    row.linear = pose.b.getBasis().getColumn(index);
    row.angularA = (pose.a.getOrigin() - pose.cmA).cross(row.linear);
    row.angularB = -(pose.a.getOrigin() - pose.cmB).cross(row.linear);
    error = pose.apart.dot(row.linear);
    return row;
  }
  if (m_kind.gear) {
    error = m_gearSlip;
    return gearRow(pose);
  }
  row.linear.setZero();
  if (m_kind.angular == 1) {
    btVector3 const x = pose.a.getBasis().getColumn(0), z = pose.b.getBasis().getColumn(2);
    row.angularA = x.cross(z);
    row.angularB = -row.angularA;
    error = x.dot(z);
    return row;
  }
  row.angularA = pose.b.getBasis().getColumn(index - m_kind.linear);
  row.angularB = -row.angularA;
  error = turn(pose).dot(row.angularA);
  return row;
}

// Rotation of the second body about its axis, against what the first one's turning asks for.
ConstraintRow ConstraintImpl::gearRow(Pose const& pose) const {
  ConstraintRow row;
  row.linear.setZero();
  row.angularA = -gearRatio * pose.a.getBasis().getColumn(2);
  row.angularB = pose.b.getBasis().getColumn(2);
  return row;
}

// Rotation of a against b that the constraint does not allow, as a small vector.
btVector3 ConstraintImpl::turn(Pose const& pose) const {
  if (m_kind.angular == 2)
    return pose.b.getBasis().getColumn(2).cross(pose.a.getBasis().getColumn(2));
  btQuaternion const q = pose.a.getRotation() * pose.b.getRotation().inverse();
  return btVector3(q.x(), q.y(), q.z()) * (q.w() < 0 ? -2.0 : 2.0);
}

int ConstraintImpl::fillRows(std::array<ConstraintRow, MAX_ROWS>& rows, double dt) {
  Pose const now = pose();
  int count = 0;
  for (; count < numHeld(); ++count) {
    double error = 0;
    ConstraintRow& row = rows[static_cast<size_t>(count)];
    row = heldRow(count, now, error);
    row.target = -correction(damping, dt) * error / dt;
    row.compliance = springCompliance(compliance, damping, dt);
    row.impulse = &m_heldImpulse[static_cast<size_t>(count)];
    boundImpulse(row, forceRange, dt);
  }
  for (Freedom& freedom : m_freedoms)
    addControllerRows(freedom, now, rows, count, dt);
  return count;
}

void ConstraintImpl::addControllerRows(Freedom& freedom, Pose const& pose,
                                       std::array<ConstraintRow, MAX_ROWS>& rows, int& count, double dt) {
  if (!freedom.motor->getEnable() && !freedom.range->getEnable() && !freedom.lock->getEnable())
    return;
  ConstraintRow const base = freedomRow(freedom, pose);
  double const position = unwrapped(freedom, wrappedPosition(freedom, pose));
  auto const add = [&](zor::Controller1D const& controller, double target,
                       double& impulse) -> ConstraintRow& {
    ConstraintRow& row = rows[static_cast<size_t>(count++)];
    row = base;
    row.target = target;
    row.impulse = &impulse;
    row.compliance = springCompliance(controller.getCompliance(), controller.getDamping(), dt);
    boundImpulse(row, controller.getForceRange(), dt);
    return row;
  };
  auto const towards = [&](zor::Controller1D const& controller, double goal) {
    return correction(controller.getDamping(), dt) * (goal - position) / dt;
  };
  if (freedom.motor->getEnable())
    add(*freedom.motor, freedom.motor->getSpeed(), freedom.motorImpulse).compliance =
        freedom.motor->getCompliance() / dt;
  if (freedom.lock->getEnable())
    add(*freedom.lock, towards(*freedom.lock, freedom.lock->getPosition()), freedom.lockImpulse);
  if (!freedom.range->getEnable())
    return;
  // Inside the range a stop only forbids the speed that would pass it within the step.
  zor::RangeReal const range = freedom.range->getRange();
  if (std::isfinite(range.lower())) {
    double const gap = range.lower() - position;
    ConstraintRow& row = add(*freedom.range, gap < 0 ? gap / dt : towards(*freedom.range, range.lower()),
                             freedom.lowerImpulse);
    row.lowerImpulse = 0;
  }
  if (std::isfinite(range.upper())) {
    double const gap = range.upper() - position;
    ConstraintRow& row = add(*freedom.range, gap > 0 ? gap / dt : towards(*freedom.range, range.upper()),
                             freedom.upperImpulse);
    row.upperImpulse = 0;
  }
}

void ConstraintImpl::addReaction(btVector3 const& linearA, btVector3 const& angularA,
                                 btVector3 const& linearB, btVector3 const& angularB) {
  m_linearImpulse[0] += linearA;
  m_angularImpulse[0] += angularA;
  m_linearImpulse[1] += linearB;
  m_angularImpulse[1] += angularB;
  m_acted = true;
}

bool ConstraintImpl::reaction(int index, btVector3& force, btVector3& torque) const {
  force = m_force[static_cast<size_t>(index)];
  torque = m_torque[static_cast<size_t>(index)];
  return m_known && body(index);
}

// --- settings

void ConstraintImpl::setEnable(bool enable) {
  m_enabled = enable;
  if (m_simulation)
    update();
  wake();
}

void ConstraintImpl::setCollisions(bool enable) {
  if (enable == m_collisions)
    return;
  takeOut();
  m_collisions = enable;
  if (m_simulation)
    update();
}

void ConstraintImpl::wake() {
  for (auto const& each : m_bodies)
    if (each)
      each->getImpl().wake();
}

// --- simulation

void ConstraintImpl::enter(zorSDK::Simulation* simulation, SpaceImpl& space) {
  m_simulation = simulation;
  m_space = &space;
  update();
  wake();
}

void ConstraintImpl::leave() {
  takeOut();
  wake();
  clearImpulses();
  m_simulation = nullptr;
  m_space = nullptr;
}

bool ConstraintImpl::wanted() const {
  bool moves = false;
  for (auto const& each : m_bodies) {
    if (!each)
      continue;
    if (!each->getImpl().inWorld() || each->getImpl().simulation() != m_simulation)
      return false;
    moves = moves || each->getImpl().movesByForces();
  }
  return m_enabled && moves;
}

void ConstraintImpl::update() {
  if (!wanted()) {
    takeOut();
  } else if (!m_engine) {
    putIn();
    forgetContacts();
  }
}

btTypedConstraint& ConstraintImpl::putIn() {
  if (!m_engine) {
    m_engine = std::make_unique<RowConstraint>(*this, engineBody(0), engineBody(1));
    m_space->world().addConstraint(m_engine.get(), !m_collisions);
  }
  return *m_engine;
}

void ConstraintImpl::takeOut() {
  if (!m_engine)
    return;
  m_space->world().removeConstraint(m_engine.get());
  m_engine.reset();
  forgetContacts();
  clearImpulses();
}

// Contacts between the joined bodies that stand from before would stay as they are.
void ConstraintImpl::forgetContacts() {
  if (m_collisions || !body(0) || !body(1))
    return;
  DynamicsWorld& world = m_space->world();
  if (body(0)->getImpl().inWorld())
    world.getBroadphase()->getOverlappingPairCache()->cleanProxyFromPairs(engineBody(0).getBroadphaseHandle(),
                                                                          world.getDispatcher());
}

void ConstraintImpl::clearImpulses() {
  m_heldImpulse.fill(0);
  m_heldForce.fill(0);
  m_force = {btVector3(0, 0, 0), btVector3(0, 0, 0)};
  m_torque = m_linearImpulse = m_angularImpulse = m_force;
  m_known = false;
  m_gearSlip = 0;
  for (Freedom& freedom : m_freedoms) {
    freedom.motorImpulse = freedom.lowerImpulse = freedom.upperImpulse = freedom.lockImpulse = 0;
    freedom.motor->m_currentForce = freedom.range->m_currentForce = freedom.lock->m_currentForce = 0;
  }
}

void ConstraintImpl::beforeSubStep(double dt) {
  if (m_engine)
    m_engine->setTimeStep(dt);
  m_acted = false;
  m_linearImpulse = m_angularImpulse = {btVector3(0, 0, 0), btVector3(0, 0, 0)};
}

void ConstraintImpl::afterSubStep(double dt) {
  for (Freedom& freedom : m_freedoms)
    freedom.angle = unwrapped(freedom, wrappedPosition(freedom, pose()));
  if (m_kind.gear && m_engine && m_acted) {
    ConstraintRow const row = gearRow(pose());
    m_gearSlip += dt * (row.angularA.dot(engineBody(0).getAngularVelocity()) +
                        row.angularB.dot(engineBody(1).getAngularVelocity()));
  }
  if (!m_engine || !m_acted)
    return; // asleep: the forces of the last step still hold
  m_known = true;
  for (size_t i = 0; i < 6; ++i)
    m_heldForce[i] = m_heldImpulse[i] / dt;
  for (size_t i = 0; i < 2; ++i) {
    m_force[i] = m_linearImpulse[i] / dt;
    m_torque[i] = m_angularImpulse[i] / dt;
  }
  for (Freedom& freedom : m_freedoms) {
    freedom.motor->m_currentForce = freedom.motor->getEnable() ? freedom.motorImpulse / dt : 0;
    freedom.lock->m_currentForce = freedom.lock->getEnable() ? freedom.lockImpulse / dt : 0;
    freedom.range->m_currentForce =
        freedom.range->getEnable() ? (freedom.lowerImpulse + freedom.upperImpulse) / dt : 0;
  }
  if (m_statistics && std::isfinite(m_force[0].length2() + m_torque[0].length2()))
    addToStatistics();
}

// --- statistics

void ConstraintImpl::setStatistics(bool enable) {
  m_statistics = enable ? std::make_unique<Statistics>() : nullptr;
  if (enable)
    m_statistics->freedoms.resize(m_freedoms.size());
}

void ConstraintImpl::addToStatistics() {
  m_statistics->force.add(m_force[0].length());
  m_statistics->torque.add(m_torque[0].length());
  for (size_t i = 0; i < m_freedoms.size(); ++i) {
    auto& [motor, range, lock] = m_statistics->freedoms[i];
    motor.add(m_freedoms[i].motor->m_currentForce);
    range.add(m_freedoms[i].range->m_currentForce);
    lock.add(m_freedoms[i].lock->m_currentForce);
  }
}

zor::ForceStatistics ConstraintImpl::statisticsOf(zor::Controller1D const& controller) const {
  for (size_t i = 0; m_statistics && i < m_freedoms.size(); ++i) {
    Freedom const& freedom = m_freedoms[i];
    zor::Controller1D const* const own[] = {freedom.motor.get(), freedom.range.get(), freedom.lock.get()};
    for (size_t k = 0; k < 3; ++k)
      if (own[k] == &controller)
        return m_statistics->freedoms[i][k];
  }
  return {};
}

} // namespace zorBullet
