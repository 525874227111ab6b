#include <zor/UniversalJoint.h>

#include <stdexcept>
#include <string>

#include "bullet/MakeConstraint.h"

namespace zor {

namespace {

using Kind = zorBullet::ConstraintKind;
Kind const KIND{"UniversalJoint", 3, 1, {Kind::ROTATION, Kind::SPIN}};

int index(UniversalJoint::DOF dof) {
  int const number = dof;
  if (number < 0 || number >= 2)
    throw std::out_of_range("UniversalJoint: " + std::to_string(number) + " is no degree of freedom");
  return number;
}

} // namespace

UniversalJoint::UniversalJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint(zorBullet::makeAtFrames(KIND, body1, frame1, body2, frame2)) {}

UniversalJoint::UniversalJoint(Vec3 const& worldPoint, Vec3 const& axis1, Vec3 const& axis2, RigidBody* body1,
                               RigidBody* body2)
    : Constraint(zorBullet::makeAtCross(KIND, worldPoint, axis1, axis2, body1, body2)) {}

Real UniversalJoint::getAngle(DOF dof) const {
  return m_impl->position(index(dof));
}

Real UniversalJoint::getSpeed(DOF dof) const {
  return m_impl->speed(index(dof));
}

Motor1D* UniversalJoint::getMotor1D(DOF dof) const {
  return m_impl->freedom(index(dof)).motor.get();
}

Range1D* UniversalJoint::getRange1D(DOF dof) const {
  return m_impl->freedom(index(dof)).range.get();
}

Lock1D* UniversalJoint::getLock1D(DOF dof) const {
  return m_impl->freedom(index(dof)).lock.get();
}

UniversalJoint::~UniversalJoint() = default;

} // namespace zor
