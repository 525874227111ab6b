#pragma once

#include <zor/Constraint.h>
#include <zor/Lock1D.h>
#include <zor/Motor1D.h>
#include <zor/Range1D.h>

namespace zor {

/** A universal (Cardan) joint: holds a point of each body together, and two axes at a right angle to each
 * other, the z axis of the second attachment and the x axis of the first. The bodies turn about both axes,
 * but do not twist against each other. Both freedoms can be driven, bounded and locked. */
class UniversalJoint : public Constraint {
public:
  /** Creates the joint from attachment frames.
   * \param body1 First body, not null.
   * \param frame1 Attachment in the first body's model frame; null for the model frame itself.
   * \param body2 Second body, null for the world.
   * \param frame2 Attachment in the second body's model frame (the world's for a null body); null to take
   *        the place where the first attachment is now.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  UniversalJoint(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2 = nullptr,
                 zor::Frame* frame2 = nullptr);

  /** Creates the joint from a point and the two axes, for the bodies as they are now.
   * \param worldPoint Where the axes cross, in metres.
   * \param axis1 Axis that the first body carries, need not have unit length.
   * \param axis2 Axis that the second body, or the world, carries.
   * \param body1 First body, not null.
   * \param body2 Second body, null for the world.
   * \throws std::invalid_argument When body1 is null, both bodies are the same or the axes are not at a right
   *         angle (to 1e-6).
   */
  UniversalJoint(zor::Vec3 const& worldPoint, zor::Vec3 const& axis1, zor::Vec3 const& axis2,
                 zor::RigidBody* body1, zor::RigidBody* body2 = nullptr);

  /** The two free degrees of freedom, both in rad. */
  enum DOF : int {
    SECOND_AXIS = 0, /**< About the axis of the second body. */
    FIRST_AXIS = 1   /**< About the axis of the first body. */
  };

  /** \return Position in m or angle in rad of the given degree of freedom. */
  zor::Real getAngle(zor::UniversalJoint::DOF dof) const;
  /** \return Speed in m/s or rad/s of the given degree of freedom. */
  zor::Real getSpeed(zor::UniversalJoint::DOF dof) const;
  /** \return The motor of the given degree of freedom, owned by the constraint. */
  zor::Motor1D* getMotor1D(zor::UniversalJoint::DOF dof) const;
  /** \return The range of the given degree of freedom, owned by the constraint. */
  zor::Range1D* getRange1D(zor::UniversalJoint::DOF dof) const;
  /** \return The lock of the given degree of freedom, owned by the constraint. */
  zor::Lock1D* getLock1D(zor::UniversalJoint::DOF dof) const;

protected:
  ~UniversalJoint() override;
};

} // namespace zor
