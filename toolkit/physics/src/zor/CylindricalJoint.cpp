#include <zor/CylindricalJoint.h>

#include <stdexcept>
#include <string>

#include "bullet/MakeConstraint.h"

namespace zor {

namespace {

using Kind = zorBullet::ConstraintKind;
Kind const KIND{"CylindricalJoint", 2, 2, {Kind::TRANSLATION, Kind::ROTATION}};

int index(CylindricalJoint::DOF dof) {
  if (dof != CylindricalJoint::TRANSLATIONAL && dof != CylindricalJoint::ROTATIONAL)
    throw std::out_of_range("CylindricalJoint: " + std::to_string(static_cast<int>(dof)) +
                            " is no degree of freedom");
  return static_cast<int>(dof);
}

} // namespace

CylindricalJoint::CylindricalJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint(zorBullet::makeAtFrames(KIND, body1, frame1, body2, frame2)) {}

CylindricalJoint::CylindricalJoint(Vec3 const& worldPoint, Vec3 const& worldAxis, RigidBody* body1,
                                   RigidBody* body2)
    : Constraint(zorBullet::makeAtPoint(KIND, worldPoint, worldAxis, body1, body2)) {}

Real CylindricalJoint::getAngle(DOF dof) const {
  return m_impl->position(index(dof));
}

Real CylindricalJoint::getSpeed(DOF dof) const {
  return m_impl->speed(index(dof));
}

Motor1D* CylindricalJoint::getMotor1D(DOF dof) const {
  return m_impl->freedom(index(dof)).motor.get();
}

Range1D* CylindricalJoint::getRange1D(DOF dof) const {
  return m_impl->freedom(index(dof)).range.get();
}

Lock1D* CylindricalJoint::getLock1D(DOF dof) const {
  return m_impl->freedom(index(dof)).lock.get();
}

CylindricalJoint::~CylindricalJoint() = default;

} // namespace zor
