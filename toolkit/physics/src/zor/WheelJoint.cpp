#include <zor/WheelJoint.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "bullet/MakeConstraint.h"
#include "zor/Checks.h"

namespace zor {

namespace {

using Kind = zorBullet::ConstraintKind;
Kind const KIND{"WheelJoint", 2, 1, {Kind::TRANSLATION, Kind::ROTATION, Kind::SPIN}};

int index(WheelJoint::DOF dof) {
  int const number = dof;
  if (number < 0 || number >= 3)
    throw std::out_of_range("WheelJoint: " + std::to_string(number) + " is no degree of freedom");
  return number;
}

std::unique_ptr<zorBullet::ConstraintImpl> locked(std::unique_ptr<zorBullet::ConstraintImpl> impl) {
  for (WheelJoint::DOF const dof : {WheelJoint::SUSPENSION, WheelJoint::STEERING})
    impl->freedom(index(dof)).lock->setEnable(true);
  return impl;
}

} // namespace

WheelJoint::WheelJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint(locked(zorBullet::makeAtFrames(KIND, body1, frame1, body2, frame2))) {}

WheelJoint::WheelJoint(Vec3 const& worldPoint, Vec3 const& axle, Vec3 const& up, RigidBody* body1,
                       RigidBody* body2)
    : Constraint(locked(zorBullet::makeAtCross(KIND, worldPoint, axle, up, body1, body2))) {}

Real WheelJoint::getAngle(DOF dof) const {
  return m_impl->position(index(dof));
}

Real WheelJoint::getSpeed(DOF dof) const {
  return m_impl->speed(index(dof));
}

Motor1D* WheelJoint::getMotor1D(DOF dof) const {
  return m_impl->freedom(index(dof)).motor.get();
}

Range1D* WheelJoint::getRange1D(DOF dof) const {
  return m_impl->freedom(index(dof)).range.get();
}

Lock1D* WheelJoint::getLock1D(DOF dof) const {
  return m_impl->freedom(index(dof)).lock.get();
}

void WheelJoint::setSuspension(Real stiffness, Real damping, RangeReal const& travel) {
  getLock1D(SUSPENSION)->setSpring(stiffness, damping);
  getRange1D(SUSPENSION)->setRange(travel);
  getRange1D(SUSPENSION)->setEnable(std::isfinite(travel.lower()) || std::isfinite(travel.upper()));
}

void WheelJoint::setSteeringAngle(Real angle) {
  getLock1D(STEERING)->setPosition(angle);
  getLock1D(STEERING)->setEnable(true);
}

WheelJoint::~WheelJoint() = default;

} // namespace zor
