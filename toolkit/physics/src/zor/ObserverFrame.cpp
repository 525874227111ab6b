#include <zor/ObserverFrame.h>

#include <zor/RigidBody.h>

#include "zor/Checks.h"

namespace zor {

ObserverFrame::ObserverFrame(std::string const& name) : Object(name), m_frame(new Frame) {}

ObserverFrame::ObserverFrame(RigidBody* body, AffineMatrix4x4 const& localTransform, std::string const& name)
    : ObserverFrame(name) {
  if (body)
    attachWithLocalTransform(body, localTransform);
  else
    setLocalTransform(localTransform);
}

ObserverFrame::~ObserverFrame() = default;

void ObserverFrame::attachWithLocalTransform(RigidBody* body, AffineMatrix4x4 const& localTransform) {
  checkNotNull(body, "ObserverFrame::attachWithLocalTransform");
  checkRigid(localTransform, "ObserverFrame::attachWithLocalTransform");
  m_body = body;
  m_frame->setParent(body->getFrame());
  m_frame->setLocalMatrix(localTransform);
}

void ObserverFrame::attachWithWorldTransform(RigidBody* body, AffineMatrix4x4 const& worldTransform) {
  checkNotNull(body, "ObserverFrame::attachWithWorldTransform");
  checkRigid(worldTransform, "ObserverFrame::attachWithWorldTransform");
  m_body = body;
  m_frame->setParent(body->getFrame());
  m_frame->setMatrix(worldTransform);
}

void ObserverFrame::detach() {
  AffineMatrix4x4 const world = getTransform();
  m_frame->setParent(nullptr);
  m_frame->setLocalMatrix(world);
  m_body = nullptr;
}

RigidBody* ObserverFrame::getRigidBody() const {
  return m_body.get();
}

Frame* ObserverFrame::getFrame() {
  return m_frame.get();
}

Frame const* ObserverFrame::getFrame() const {
  return m_frame.get();
}

Vec3 ObserverFrame::getPosition() const {
  return m_frame->getTranslate();
}

Quat ObserverFrame::getRotation() const {
  return m_frame->getRotate();
}

AffineMatrix4x4 ObserverFrame::getTransform() const {
  return m_frame->getMatrix();
}

AffineMatrix4x4 ObserverFrame::getLocalTransform() const {
  return m_frame->getLocalMatrix();
}

void ObserverFrame::setLocalTransform(AffineMatrix4x4 const& transform) {
  checkRigid(transform, "ObserverFrame::setLocalTransform");
  m_frame->setLocalMatrix(transform);
}

Vec3 ObserverFrame::getVelocity() const {
  return m_body ? m_body->getVelocityAt(getPosition()) : Vec3();
}

Vec3 ObserverFrame::getAngularVelocity() const {
  return m_body ? m_body->getAngularVelocity() : Vec3();
}

void ObserverFrame::setEnable(bool enable) {
  m_enabled = enable;
}

bool ObserverFrame::getEnable() const {
  return m_enabled;
}

zorSDK::Simulation* ObserverFrame::getSimulation() const {
  return m_simulation;
}

} // namespace zor
