#pragma once

#include <urdf_model/joint.h>

#include <zor/Constraint1DOF.h>
#include <zor/RigidBody.h>
#include <zorModel/UrdfJoint.h>
#include <zorSDK/Assembly.h>

namespace zorModel {

/** Makes the constraint of a joint between two bodies that stand where it holds them, and adds it to the
 * robot. */
class JointBuilder {
public:
  /** A body and the joint's frame in it. */
  struct End {
    zor::RigidBody* body;
    zor::AffineMatrix4x4 frame;
  };

  JointBuilder(zorSDK::Assembly& robot, urdf::Joint const& source, UrdfJoint const& joint)
      : m_robot(robot), m_source(source), m_joint(joint) {}

  void build(End const& child, End const& parent);

private:
  template <class Kind>
  Kind* add(End const& child, End const& parent, zor::Vec3 const& axis, std::string const& name);
  void addPlanar(End const& child, End const& parent);
  zor::RigidBody* addHub(End const& child, std::string const& name);
  void setControllers(zor::Constraint1DOF& constraint) const;

  zorSDK::Assembly& m_robot;
  urdf::Joint const& m_source;
  UrdfJoint const& m_joint;
};

} // namespace zorModel
