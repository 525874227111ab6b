#include "urdf/Joints.h"

#include <algorithm>
#include <stdexcept>

namespace zorModel {

namespace {

UrdfJoint::Type typeOf(urdf::Joint const& joint) {
  switch (joint.type) {
  case urdf::Joint::REVOLUTE:
    return UrdfJoint::REVOLUTE;
  case urdf::Joint::CONTINUOUS:
    return UrdfJoint::CONTINUOUS;
  case urdf::Joint::PRISMATIC:
    return UrdfJoint::PRISMATIC;
  case urdf::Joint::FLOATING:
    return UrdfJoint::FLOATING;
  case urdf::Joint::PLANAR:
    return UrdfJoint::PLANAR;
  default:
    return UrdfJoint::FIXED;
  }
}

[[noreturn]] void fail(std::string const& joint, std::string const& what) {
  throw std::runtime_error(quoted("joint", joint) + ": " + what);
}

void takeLimits(urdf::Joint const& source, UrdfJoint& joint) {
  if (!source.limits)
    return;
  urdf::JointLimits const& limits = *source.limits;
  if (limits.effort < 0 || limits.velocity < 0)
    fail(joint.name, "a limit of effort or velocity is negative");
  if (limits.effort > 0)
    joint.effort = limits.effort;
  if (limits.velocity > 0)
    joint.velocity = limits.velocity;
  if (joint.type != UrdfJoint::REVOLUTE && joint.type != UrdfJoint::PRISMATIC)
    return;
  if (limits.lower > limits.upper)
    fail(joint.name, "the lower limit " + std::to_string(limits.lower) + " lies above the upper one " +
                         std::to_string(limits.upper));
  joint.lower = limits.lower;
  joint.upper = limits.upper;
}

void takeDynamics(urdf::Joint const& source, UrdfJoint& joint) {
  if (!source.dynamics)
    return;
  joint.damping = source.dynamics->damping;
  joint.friction = source.dynamics->friction;
  if (joint.damping < 0 || joint.friction < 0)
    fail(joint.name, "damping or friction is negative");
}

UrdfJoint jointOf(urdf::Joint const& source) {
  UrdfJoint joint;
  joint.name = source.name;
  joint.type = typeOf(source);
  joint.parent = source.parent_link_name;
  joint.child = source.child_link_name;
  if (joint.type != UrdfJoint::FIXED && joint.type != UrdfJoint::FLOATING &&
      !(toZor(source.axis).length() > 0))
    fail(joint.name, "the axis has no length");
  takeLimits(source, joint);
  takeDynamics(source, joint);
  if (source.mimic) {
    joint.mimicJoint = source.mimic->joint_name;
    joint.mimicMultiplier = source.mimic->multiplier;
    joint.mimicOffset = source.mimic->offset;
  }
  return joint;
}

} // namespace

Joints::Joints(Description const& description, std::map<std::string, zor::Real> const& positions) {
  for (urdf::LinkConstSharedPtr const& link : description.links())
    if (link->parent_joint) {
      m_byName[link->parent_joint->name] = m_all.size();
      m_all.push_back(jointOf(*link->parent_joint));
    }
  setPositions(positions);
  followOthers();
}

void Joints::setPositions(std::map<std::string, zor::Real> const& positions) {
  for (UrdfJoint& joint : m_all)
    joint.position = std::clamp(0.0, joint.lower, joint.upper);
  for (auto const& [name, position] : positions) {
    auto const found = m_byName.find(name);
    if (found == m_byName.end())
      fail(name, "a position was set, but the robot has no such joint");
    UrdfJoint& joint = m_all[found->second];
    if (!joint.hasPosition() || !joint.mimicJoint.empty())
      fail(name, "a position was set, but the joint has none of its own");
    if (position < joint.lower || position > joint.upper)
      fail(name, "the position " + std::to_string(position) + " that was set lies outside the limits " +
                     std::to_string(joint.lower) + " to " + std::to_string(joint.upper));
    joint.position = position;
  }
}

void Joints::followOthers() {
  for (UrdfJoint& joint : m_all) {
    if (joint.mimicJoint.empty())
      continue;
    auto const leader = m_byName.find(joint.mimicJoint);
    if (leader == m_byName.end() || !m_all[leader->second].hasPosition() || !joint.hasPosition() ||
        !m_all[leader->second].mimicJoint.empty())
      fail(joint.name, "it cannot mimic " + quoted("joint", joint.mimicJoint) +
                           ": both must be revolute, continuous or prismatic, and that one follow no other");
    joint.position = std::clamp(joint.mimicMultiplier * m_all[leader->second].position + joint.mimicOffset,
                                joint.lower, joint.upper);
  }
}

zor::Vec3 axisOf(urdf::Joint const& joint) {
  return toZor(joint.axis).normal();
}

zor::AffineMatrix4x4 motionOf(urdf::Joint const& joint, zor::Real position) {
  switch (joint.type) {
  case urdf::Joint::REVOLUTE:
  case urdf::Joint::CONTINUOUS:
    return zor::AffineMatrix4x4::rotate(position, axisOf(joint));
  case urdf::Joint::PRISMATIC:
    return zor::AffineMatrix4x4::translate(axisOf(joint) * position);
  default:
    return zor::AffineMatrix4x4();
  }
}

} // namespace zorModel
