#include <zor/Constraint.h>

#include <stdexcept>

#include "bullet/ConstraintImpl.h"
#include "bullet/Conversions.h"
#include "zor/Checks.h"

namespace zor {

namespace {

int checkIndex(UInt index, UInt count, char const* where) {
  if (index >= count)
    throw std::out_of_range(std::string(where) + ": index " + std::to_string(index) + " is not below " +
                            std::to_string(count));
  return static_cast<int>(index);
}

} // namespace

Constraint::Constraint(std::unique_ptr<zorBullet::ConstraintImpl> impl) : m_impl(std::move(impl)) {}

Constraint::~Constraint() = default;

RigidBody* Constraint::getBody(UInt index) const {
  return m_impl->body(checkIndex(index, 2, "Constraint::getBody"));
}

UInt Constraint::getNumBodies() const {
  return m_impl->body(1) ? 2 : 1;
}

Frame* Constraint::getAttachment(UInt index) const {
  return m_impl->attachment(checkIndex(index, 2, "Constraint::getAttachment"));
}

AffineMatrix4x4 Constraint::getAttachmentTransform(UInt index) const {
  return m_impl->attachment(checkIndex(index, 2, "Constraint::getAttachmentTransform"))->getMatrix();
}

void Constraint::setEnable(bool enable) {
  m_impl->setEnable(enable);
}

bool Constraint::getEnable() const {
  return m_impl->enabled();
}

void Constraint::setEnableCollisions(bool enable) {
  m_impl->setCollisions(enable);
}

bool Constraint::getEnableCollisions() const {
  return m_impl->collisions();
}

UInt Constraint::getNumDOF() const {
  return static_cast<UInt>(m_impl->numHeld());
}

void Constraint::setCompliance(Real compliance) {
  checkNotNegative(compliance, "Constraint::setCompliance");
  m_impl->compliance = compliance;
  m_impl->wake();
}

Real Constraint::getCompliance() const {
  return m_impl->compliance;
}

void Constraint::setDamping(Real damping) {
  checkNotNegative(damping, "Constraint::setDamping");
  m_impl->damping = damping;
  m_impl->wake();
}

Real Constraint::getDamping() const {
  return m_impl->damping;
}

void Constraint::setForceRange(RangeReal const& range) {
  if (!range.contains(0))
    throw std::invalid_argument("Constraint::setForceRange: the range does not contain zero");
  m_impl->forceRange = range;
  m_impl->wake();
}

RangeReal Constraint::getForceRange() const {
  return m_impl->forceRange;
}

Real Constraint::getCurrentForce(UInt dof) const {
  return m_impl->heldForce(checkIndex(dof, getNumDOF(), "Constraint::getCurrentForce"));
}

bool Constraint::getLastForce(UInt index, Vec3& force, Vec3& torque) const {
  btVector3 engineForce, engineTorque;
  bool const known =
      m_impl->reaction(checkIndex(index, 2, "Constraint::getLastForce"), engineForce, engineTorque);
  force = known ? zorBullet::fromBt(engineForce) : Vec3();
  torque = known ? zorBullet::fromBt(engineTorque) : Vec3();
  return known;
}

void Constraint::setEnableForceStatistics(bool enable) {
  m_impl->setStatistics(enable);
}

bool Constraint::getEnableForceStatistics() const {
  return m_impl->hasStatistics();
}

ForceStatistics Constraint::getForceStatistics() const {
  return m_impl->forceStatistics();
}

ForceStatistics Constraint::getTorqueStatistics() const {
  return m_impl->torqueStatistics();
}

zorSDK::Simulation* Constraint::getSimulation() const {
  return m_impl->simulation();
}

} // namespace zor
