#pragma once

#include <limits>

#include <zor/Types.h>
#include <zor/Vector.h>

namespace zorModel {

/** What a URDF file says of a joint. Units follow the joint: rad, rad/s and N m, or m, m/s and N. */
class UrdfJoint {
public:
  /** Kinds of joints. */
  enum Type : int {
    FIXED,      ///< The links are one.
    REVOLUTE,   ///< Turns about the axis, within limits.
    CONTINUOUS, ///< Turns about the axis without limits.
    PRISMATIC,  ///< Slides along the axis, within limits.
    FLOATING,   ///< Moves freely.
    PLANAR      ///< Moves in the plane across the axis.
  };

  /** \return true if one number is the joint's position: revolute, continuous and prismatic joints */
  bool hasPosition() const { return type == REVOLUTE || type == CONTINUOUS || type == PRISMATIC; }

  zor::String name;                                              ///< name of the joint and of its constraint
  Type type = FIXED;                                             ///< kind of joint
  zor::String parent;                                            ///< name of the link that holds the joint
  zor::String child;                                             ///< name of the link that the joint moves
  zor::Real lower = -std::numeric_limits<zor::Real>::infinity(); ///< lowest position; -inf if not limited
  zor::Real upper = std::numeric_limits<zor::Real>::infinity();  ///< highest position; inf if not limited
  zor::Real effort = std::numeric_limits<zor::Real>::infinity(); ///< greatest force; inf if not told (or 0)
  zor::Real velocity = std::numeric_limits<zor::Real>::infinity(); ///< greatest speed; inf if not told (or 0)
  zor::Real damping = 0;                                           ///< force for each unit of speed
  zor::Real friction = 0;                                          ///< force that holds the joint at rest
  zor::Real position = 0;                                          ///< where the reader put the joint
  zor::String mimicJoint;        ///< joint that this one follows; empty for none
  zor::Real mimicMultiplier = 1; ///< share of the followed joint's position
  zor::Real mimicOffset = 0;     ///< what is added to it
};

/** Joints in a row. */
typedef zor::Vector<zorModel::UrdfJoint> UrdfJointVector;

} // namespace zorModel
