#include "urdf/JointBuilder.h"

#include <cmath>

#include <zor/Hinge.h>
#include <zor/LockJoint.h>
#include <zor/Prismatic.h>

#include "urdf/Joints.h"

namespace zorModel {

namespace {

/** A frame whose z axis lies along an axis of the joint's frame. */
zor::ref_ptr<zor::Frame> attachment(zor::AffineMatrix4x4 const& jointFrame, zor::Vec3 const& axis) {
  return new zor::Frame(zor::AffineMatrix4x4::rotate(zor::Vec3(0, 0, 1), axis) * jointFrame);
}

} // namespace

void JointBuilder::build(End const& child, End const& parent) {
  switch (m_joint.type) {
  case UrdfJoint::FIXED:
    add<zor::LockJoint>(child, parent, zor::Vec3(0, 0, 1), m_joint.name);
    break;
  case UrdfJoint::REVOLUTE:
  case UrdfJoint::CONTINUOUS:
    setControllers(*add<zor::Hinge>(child, parent, axisOf(m_source), m_joint.name));
    break;
  case UrdfJoint::PRISMATIC:
    setControllers(*add<zor::Prismatic>(child, parent, axisOf(m_source), m_joint.name));
    break;
  case UrdfJoint::PLANAR:
    addPlanar(child, parent);
    break;
  case UrdfJoint::FLOATING:
    break;
  }
}

template <class Kind>
Kind* JointBuilder::add(End const& child, End const& parent, zor::Vec3 const& axis, std::string const& name) {
  zor::ref_ptr<Kind> joint = new Kind(child.body, attachment(child.frame, axis).get(), parent.body,
                                      attachment(parent.frame, axis).get());
  joint->setName(name);
  m_robot.add(joint.get());
  return joint.get();
}

// Two sliders in the plane and a hinge about its normal, with a small body between each two of them.
void JointBuilder::addPlanar(End const& child, End const& parent) {
  zor::Vec3 const normal = axisOf(m_source), x = normal.perpendicular(), y = normal.cross(x);
  End const first{addHub(child, m_joint.name + "/x"), zor::AffineMatrix4x4()};
  End const second{addHub(child, m_joint.name + "/y"), zor::AffineMatrix4x4()};
  add<zor::Prismatic>(first, parent, x, m_joint.name + "/x");
  add<zor::Prismatic>(second, first, y, m_joint.name + "/y");
  add<zor::Hinge>(child, second, normal, m_joint.name);
}

zor::RigidBody* JointBuilder::addHub(End const& child, std::string const& name) {
  constexpr zor::Real share = 0.01; // light enough not to be felt, heavy enough for the solver
  zor::ref_ptr<zor::RigidBody> hub = new zor::RigidBody(name);
  zor::MassProperties const& heavy = *child.body->getMassProperties();
  hub->getMassProperties()->setMass(share * heavy.getMass());
  // It turns with the parent only, so that its inertia is not felt by the child.
  zor::Vec3 const inertia = heavy.getPrincipalInertiae();
  zor::Real const mean = (inertia.x() + inertia.y() + inertia.z()) / 3;
  hub->getMassProperties()->setInertiaTensor(zor::Vec3(mean, mean, mean));
  hub->setTransform(child.frame * child.body->getTransform());
  m_robot.add(hub.get());
  return hub.get();
}

void JointBuilder::setControllers(zor::Constraint1DOF& constraint) const {
  zor::RangeReal const effort(-m_joint.effort, m_joint.effort);
  constraint.getLock1D()->setForceRange(effort);
  constraint.getLock1D()->setPosition(m_joint.position);
  zor::Motor1D& motor = *constraint.getMotor1D();
  motor.setForceRange(effort);
  if (m_joint.damping > 0)
    motor.setCompliance(1 / m_joint.damping);
  else if (m_joint.friction > 0)
    motor.setForceRange(zor::RangeReal(-m_joint.friction, m_joint.friction));
  motor.setEnable(m_joint.damping > 0 || m_joint.friction > 0);
  if (std::isfinite(m_joint.lower) || std::isfinite(m_joint.upper)) {
    constraint.getRange1D()->setRange(m_joint.lower, m_joint.upper);
    constraint.getRange1D()->setEnable(true);
  }
}

} // namespace zorModel
