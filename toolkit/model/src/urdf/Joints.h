#pragma once

#include <map>
#include <string>

#include <zor/AffineMatrix4x4.h>
#include <zorModel/UrdfJoint.h>

#include "urdf/Description.h"

namespace zorModel {

/** The joints of a description, checked, with the positions at which the robot is put together. */
class Joints {
public:
  /** \param positions - wanted positions by name of joint \throws std::runtime_error naming the joint */
  Joints(Description const& description, std::map<std::string, zor::Real> const& positions);

  /** All of them, each after that of its parent link. */
  UrdfJointVector const& all() const { return m_all; }
  UrdfJoint const& get(std::string const& name) const { return m_all[m_byName.at(name)]; }

private:
  void setPositions(std::map<std::string, zor::Real> const& positions);
  void followOthers();

  UrdfJointVector m_all;
  std::map<std::string, std::size_t> m_byName;
};

/** Axis of a joint with length 1. */
zor::Vec3 axisOf(urdf::Joint const& joint);

/** Motion of a joint's child link away from where it stands at position zero, in the joint's frame. */
zor::AffineMatrix4x4 motionOf(urdf::Joint const& joint, zor::Real position);

} // namespace zorModel
