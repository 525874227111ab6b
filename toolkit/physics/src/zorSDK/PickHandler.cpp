#include <zorSDK/PickHandler.h>

#include <zor/Frame.h>
#include <zorSDK/Simulation.h>

#include "zor/Checks.h"

namespace zorSDK {

PickHandler::PickHandler() = default;

PickHandler::~PickHandler() = default;

// A ball joint that yields: a spring whose stiffness follows from the body's mass, damped critically.
bool PickHandler::grab(zor::RigidBody* body, zor::Vec3 const& worldPoint) {
  zor::checkNotNull(body, "PickHandler::grab");
  zor::checkFinite(worldPoint, "PickHandler::grab");
  reset();
  if (!getSimulation() || body->getSimulation() != getSimulation() ||
      body->getMotionControl() != zor::RigidBody::DYNAMICS)
    return false;
  m_target = worldPoint;
  m_joint = new zor::BallJoint(worldPoint, body);
  applySpring();
  return getSimulation()->add(m_joint.get());
}

void PickHandler::applySpring() {
  if (!m_joint)
    return;
  zor::Real const angular = 2 * zor::PI * m_frequency;
  zor::Real const mass = m_joint->getBody(0)->getMassProperties()->getMass();
  m_joint->setCompliance(1 / (mass * angular * angular));
  m_joint->setDamping(2 / angular);
}

void PickHandler::moveTo(zor::Vec3 const& worldPoint) {
  zor::checkFinite(worldPoint, "PickHandler::moveTo");
  m_target = worldPoint;
  if (!m_joint)
    return;
  m_joint->getAttachment(1)->setTranslate(worldPoint);
  m_joint->getBody(0)->wakeUp();
}

void PickHandler::reset() {
  if (!m_joint)
    return;
  if (m_joint->getSimulation())
    m_joint->getSimulation()->remove(m_joint.get());
  m_joint = nullptr;
}

zor::RigidBody* PickHandler::getPickedBody() const {
  return m_joint ? m_joint->getBody(0) : nullptr;
}

zor::Vec3 PickHandler::getGrabPoint() const {
  return m_joint ? m_joint->getAttachmentTransform(0).getTranslate() : zor::Vec3();
}

zor::Vec3 PickHandler::getTarget() const {
  return m_target;
}

void PickHandler::setFrequency(zor::Real frequency) {
  zor::checkPositive(frequency, "PickHandler::setFrequency");
  m_frequency = frequency;
  applySpring();
}

zor::Real PickHandler::getFrequency() const {
  return m_frequency;
}

void PickHandler::removeNotification() {
  reset();
}

} // namespace zorSDK
