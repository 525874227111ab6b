#include <zor/RigidBody.h>

#include "bullet/BodyImpl.h"
#include "bullet/Conversions.h"
#include "zor/Checks.h"

namespace zor {

using zorBullet::fromBt;
using zorBullet::toBt;

RigidBody::RigidBody(std::string const& name)
    : Object(name), m_impl(std::make_unique<zorBullet::BodyImpl>(*this)) {}

RigidBody::RigidBody(zorCollide::Geometry* geometry, std::string const& name) : RigidBody(name) {
  if (!m_impl->addGeometry(checkNotNull(geometry, "RigidBody"), AffineMatrix4x4()))
    throw std::invalid_argument("RigidBody: geometry '" + geometry->getName() +
                                "' is already part of a body or a simulation");
}

RigidBody::~RigidBody() = default;

bool RigidBody::add(zorCollide::Geometry* geometry, AffineMatrix4x4 const& localTransform) {
  checkNotNull(geometry, "RigidBody::add");
  checkRigid(localTransform, "RigidBody::add");
  return m_impl->addGeometry(*geometry, localTransform);
}

bool RigidBody::remove(zorCollide::Geometry* geometry) {
  return m_impl->removeGeometry(checkNotNull(geometry, "RigidBody::remove"));
}

zorCollide::GeometryRefVector const& RigidBody::getGeometries() const {
  return m_impl->geometries();
}

void RigidBody::setPosition(Vec3 const& position) {
  checkFinite(position, "RigidBody::setPosition");
  AffineMatrix4x4 transform = getTransform();
  transform.setTranslate(position);
  m_impl->frame()->setLocalMatrix(transform);
  m_impl->setModelTransform(toBt(transform));
}

Vec3 RigidBody::getPosition() const {
  return m_impl->frame()->getLocalTranslate();
}

void RigidBody::setRotation(Quat const& rotation) {
  Quat unit = rotation;
  if (!rotation.isFinite() || !(unit.normalize() > 0))
    throw std::invalid_argument("RigidBody::setRotation: the quaternion has no direction");
  AffineMatrix4x4 const transform(unit, getPosition());
  m_impl->frame()->setLocalMatrix(transform);
  m_impl->setModelTransform(toBt(transform));
}

Quat RigidBody::getRotation() const {
  return m_impl->frame()->getLocalRotate();
}

void RigidBody::setTransform(AffineMatrix4x4 const& transform) {
  checkRigid(transform, "RigidBody::setTransform");
  m_impl->frame()->setLocalMatrix(transform);
  m_impl->setModelTransform(toBt(transform));
}

AffineMatrix4x4 RigidBody::getTransform() const {
  return m_impl->frame()->getLocalMatrix();
}

void RigidBody::setCmPosition(Vec3 const& position) {
  checkFinite(position, "RigidBody::setCmPosition");
  setPosition(getPosition() + position - getCmPosition());
}

Vec3 RigidBody::getCmPosition() const {
  return getTransform().transformPoint(getMassProperties()->getCmLocalTranslate());
}

Quat RigidBody::getCmRotation() const {
  return getRotation();
}

AffineMatrix4x4 RigidBody::getCmTransform() const {
  return AffineMatrix4x4::translate(getMassProperties()->getCmLocalTranslate()) * getTransform();
}

void RigidBody::setVelocity(Vec3 const& velocity) {
  checkFinite(velocity, "RigidBody::setVelocity");
  m_impl->setVelocities(toBt(velocity), m_impl->engine().getAngularVelocity());
}

Vec3 RigidBody::getVelocity() const {
  return fromBt(m_impl->engine().getLinearVelocity());
}

void RigidBody::setAngularVelocity(Vec3 const& velocity) {
  checkFinite(velocity, "RigidBody::setAngularVelocity");
  m_impl->setVelocities(m_impl->engine().getLinearVelocity(), toBt(velocity));
}

Vec3 RigidBody::getAngularVelocity() const {
  return fromBt(m_impl->engine().getAngularVelocity());
}

void RigidBody::setLocalVelocity(Vec3 const& velocity) {
  checkFinite(velocity, "RigidBody::setLocalVelocity");
  setVelocity(getTransform().transformVector(velocity));
}

Vec3 RigidBody::getLocalVelocity() const {
  return getRotation().conj().rotate(getVelocity());
}

void RigidBody::setLocalAngularVelocity(Vec3 const& velocity) {
  checkFinite(velocity, "RigidBody::setLocalAngularVelocity");
  setAngularVelocity(getTransform().transformVector(velocity));
}

Vec3 RigidBody::getLocalAngularVelocity() const {
  return getRotation().conj().rotate(getAngularVelocity());
}

Vec3 RigidBody::getVelocityAt(Vec3 const& worldPoint) const {
  return getVelocity() + getAngularVelocity().cross(worldPoint - getCmPosition());
}

Vec3 RigidBody::getAcceleration() const {
  return fromBt(m_impl->acceleration());
}

Vec3 RigidBody::getAngularAcceleration() const {
  return fromBt(m_impl->angularAcceleration());
}

void RigidBody::addForce(Vec3 const& force) {
  checkFinite(force, "RigidBody::addForce");
  if (!m_impl->movesByForces())
    return;
  m_impl->engine().applyCentralForce(toBt(force));
  m_impl->wake();
}

void RigidBody::addTorque(Vec3 const& torque) {
  checkFinite(torque, "RigidBody::addTorque");
  if (!m_impl->movesByForces())
    return;
  m_impl->engine().applyTorque(toBt(torque));
  m_impl->wake();
}

void RigidBody::addForceAtPosition(Vec3 const& force, Vec3 const& worldPoint) {
  checkFinite(force, "RigidBody::addForceAtPosition");
  checkFinite(worldPoint, "RigidBody::addForceAtPosition");
  addForce(force);
  addTorque((worldPoint - getCmPosition()).cross(force));
}

void RigidBody::addForceAtLocalPosition(Vec3 const& force, Vec3 const& localPoint) {
  addForceAtPosition(force, getTransform().transformPoint(localPoint));
}

void RigidBody::addLocalForce(Vec3 const& force) {
  checkFinite(force, "RigidBody::addLocalForce");
  addForce(getTransform().transformVector(force));
}

void RigidBody::addLocalTorque(Vec3 const& torque) {
  checkFinite(torque, "RigidBody::addLocalTorque");
  addTorque(getTransform().transformVector(torque));
}

void RigidBody::addLocalForceAtLocalPosition(Vec3 const& force, Vec3 const& localPoint) {
  checkFinite(force, "RigidBody::addLocalForceAtLocalPosition");
  checkFinite(localPoint, "RigidBody::addLocalForceAtLocalPosition");
  addForceAtLocalPosition(getTransform().transformVector(force), localPoint);
}

Vec3 RigidBody::getForce() const {
  return fromBt(m_impl->engine().getTotalForce());
}

Vec3 RigidBody::getTorque() const {
  return fromBt(m_impl->engine().getTotalTorque());
}

void RigidBody::clearForces() {
  m_impl->engine().clearForces();
}

MassProperties* RigidBody::getMassProperties() {
  return &m_impl->massProperties();
}

MassProperties const* RigidBody::getMassProperties() const {
  return &m_impl->massProperties();
}

void RigidBody::updateMassProperties() {
  m_impl->computeMass();
}

void RigidBody::setMotionControl(MotionControl control) {
  if (control != STATIC && control != KINEMATICS && control != DYNAMICS)
    throw std::invalid_argument("RigidBody::setMotionControl: " + std::to_string(static_cast<int>(control)) +
                                " is no motion control");
  m_impl->setControl(control);
}

void RigidBody::moveTo(AffineMatrix4x4 const& transform, Real duration) {
  checkRigid(transform, "RigidBody::moveTo");
  checkNotNegative(duration, "RigidBody::moveTo");
  if (getMotionControl() != KINEMATICS)
    throw std::invalid_argument("RigidBody::moveTo: body '" + getName() + "' is not kinematic");
  m_impl->moveTo(toBt(transform), duration);
}

Real RigidBody::getMoveTimeLeft() const {
  return m_impl->moveTimeLeft();
}

RigidBody::MotionControl RigidBody::getMotionControl() const {
  return m_impl->control();
}

Frame* RigidBody::getFrame() {
  return m_impl->frame();
}

Frame const* RigidBody::getFrame() const {
  return m_impl->frame();
}

void RigidBody::setLinearVelocityDamping(Real damping) {
  checkNotNegative(damping, "RigidBody::setLinearVelocityDamping");
  m_impl->setDamping(damping, m_impl->angularDamping());
}

Real RigidBody::getLinearVelocityDamping() const {
  return m_impl->linearDamping();
}

void RigidBody::setAngularVelocityDamping(Real damping) {
  checkNotNegative(damping, "RigidBody::setAngularVelocityDamping");
  m_impl->setDamping(m_impl->linearDamping(), damping);
}

Real RigidBody::getAngularVelocityDamping() const {
  return m_impl->angularDamping();
}

void RigidBody::setEnable(bool enable) {
  m_impl->setEnable(enable);
}

bool RigidBody::getEnable() const {
  return m_impl->enabled();
}

void RigidBody::setEnableAutoSleep(bool enable) {
  m_impl->setAutoSleep(enable);
}

bool RigidBody::getEnableAutoSleep() const {
  return m_impl->autoSleep();
}

bool RigidBody::isSleeping() const {
  return m_impl->movesByForces() && !m_impl->engine().isActive();
}

void RigidBody::sleep() {
  m_impl->sleep();
}

void RigidBody::wakeUp() {
  m_impl->wake();
}

void RigidBody::setEnableContinuousCollision(bool enable) {
  m_impl->setContinuous(enable);
}

bool RigidBody::getEnableContinuousCollision() const {
  return m_impl->continuous();
}

Vec3 RigidBody::getMomentum() const {
  return getVelocity() * getMassProperties()->getMass();
}

Vec3 RigidBody::getAngularMomentum() const {
  Matrix3x3 const rotation = getTransform().getLinear();
  return (getAngularVelocity() * rotation.transpose()) * getMassProperties()->getInertiaTensor() * rotation;
}

Real RigidBody::getKineticEnergy() const {
  Matrix3x3 const rotation = getTransform().getLinear();
  Vec3 const spin = getAngularVelocity() * rotation.transpose(); // in the body's axes
  return 0.5 * getMassProperties()->getMass() * getVelocity().length2() +
         0.5 * spin.dot(spin * getMassProperties()->getInertiaTensor());
}

zorSDK::Simulation* RigidBody::getSimulation() const {
  return m_impl->simulation();
}

} // namespace zor
