#include <zorSDK/PickHandler.h>

#include <algorithm>

#include <zor/Frame.h>
#include <zor/Notify.h>
#include <zorSDK/Simulation.h>

#include "zor/Checks.h"

namespace zorSDK {

PickHandler::PickHandler() = default;

PickHandler::~PickHandler() {
  try {
    PickHandler::reset();
  } catch (std::exception const& error) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << "letting go of a body: " << error.what() << zor::endMessage;
  }
}

void PickHandler::setSimulation(zorSDK::Simulation* simulation) {
  if (simulation == m_chosen.get())
    return;
  reset();
  m_chosen = simulation;
}

Simulation* PickHandler::findSimulation() const {
  Simulation* const chosen = m_chosen.get();
  return chosen ? chosen : getSimulation();
}

// A ball joint that yields: a spring whose stiffness follows from the body's mass, damped critically.
bool PickHandler::grab(zor::RigidBody* body, zor::Vec3 const& worldPoint) {
  zor::checkNotNull(body, "PickHandler::grab");
  zor::checkFinite(worldPoint, "PickHandler::grab");
  reset();
  Simulation* const simulation = findSimulation();
  if (!simulation || body->getSimulation() != simulation ||
      body->getMotionControl() != zor::RigidBody::DYNAMICS)
    return false;
  m_target = worldPoint;
  m_joint = new zor::BallJoint(worldPoint, body);
  m_joint->setName("PickHandler");
  m_joint->setEnableCollisions(true);
  applySpring();
  if (!simulation->add(m_joint.get())) {
    m_joint = nullptr;
    return false;
  }
  dampRotation();
  return true;
}

bool PickHandler::isHolding() const {
  return m_joint && m_joint->getSimulation() &&
         m_joint->getBody(0)->getSimulation() == m_joint->getSimulation();
}

void PickHandler::applySpring() {
  if (!m_joint)
    return;
  zor::Real const angular = 2 * zor::PI * m_frequency;
  zor::Real const mass = m_joint->getBody(0)->getMassProperties()->getMass();
  m_joint->setCompliance(1 / (mass * angular * angular));
  m_joint->setDamping(2 / angular);
  m_joint->setForceRange(zor::RangeReal(-m_forceLimit * mass, m_forceLimit * mass));
}

void PickHandler::dampRotation() {
  zor::RigidBody* const body = m_joint->getBody(0);
  m_bodyDamping = body->getAngularVelocityDamping();
  body->setAngularVelocityDamping(std::max(m_bodyDamping, m_angularDamping));
}

/** A damping that somebody has set meanwhile stays. */
void PickHandler::restoreRotation() {
  zor::RigidBody* const body = m_joint->getBody(0);
  if (body->getAngularVelocityDamping() == std::max(m_bodyDamping, m_angularDamping))
    body->setAngularVelocityDamping(m_bodyDamping);
}

void PickHandler::moveTo(zor::Vec3 const& worldPoint) {
  zor::checkFinite(worldPoint, "PickHandler::moveTo");
  m_target = worldPoint;
  if (!m_joint)
    return;
  if (!isHolding()) {
    reset();
    return;
  }
  m_joint->getAttachment(1)->setTranslate(worldPoint);
  m_joint->getBody(0)->wakeUp();
}

void PickHandler::reset() {
  if (!m_joint)
    return;
  zor::ref_ptr<zor::BallJoint> const joint = m_joint;
  restoreRotation();
  m_joint = nullptr;
  if (joint->getSimulation())
    joint->getSimulation()->remove(joint.get());
}

zor::RigidBody* PickHandler::getPickedBody() const {
  return isHolding() ? m_joint->getBody(0) : nullptr;
}

zor::Vec3 PickHandler::getGrabPoint() const {
  return isHolding() ? m_joint->getAttachmentTransform(0).getTranslate() : zor::Vec3();
}

zor::Vec3 PickHandler::getTarget() const {
  return m_target;
}

zor::Vec3 PickHandler::getForce() const {
  zor::Vec3 force, torque;
  if (isHolding())
    m_joint->getLastForce(0, force, torque);
  return force;
}

void PickHandler::setFrequency(zor::Real frequency) {
  zor::checkPositive(frequency, "PickHandler::setFrequency");
  m_frequency = frequency;
  applySpring();
}

zor::Real PickHandler::getFrequency() const {
  return m_frequency;
}

void PickHandler::setForceLimit(zor::Real acceleration) {
  zor::checkPositive(acceleration, "PickHandler::setForceLimit");
  m_forceLimit = acceleration;
  applySpring();
}

zor::Real PickHandler::getForceLimit() const {
  return m_forceLimit;
}

void PickHandler::setAngularDamping(zor::Real damping) {
  zor::checkNotNegative(damping, "PickHandler::setAngularDamping");
  if (m_joint)
    restoreRotation();
  m_angularDamping = damping;
  if (m_joint)
    dampRotation();
}

zor::Real PickHandler::getAngularDamping() const {
  return m_angularDamping;
}

void PickHandler::removeNotification() {
  reset();
}

} // namespace zorSDK
