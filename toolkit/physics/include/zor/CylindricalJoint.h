#pragma once

#include <zor/Constraint.h>
#include <zor/Lock1D.h>
#include <zor/Motor1D.h>
#include <zor/Range1D.h>

namespace zor {

/** A cylindrical joint: body 1 slides along and turns about the z axis of the attachment frames. Both
 * freedoms can be driven, bounded and locked. */
class CylindricalJoint : public Constraint {
public:
  /** Creates the joint from attachment frames.
   * \param body1 First body, not null.
   * \param frame1 Attachment in the first body's model frame; null for the model frame itself.
   * \param body2 Second body, null for the world.
   * \param frame2 Attachment in the second body's model frame (the world's for a null body); null to take
   *        the place where the first attachment is now.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  CylindricalJoint(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2 = nullptr,
                   zor::Frame* frame2 = nullptr);

  /** Creates the joint from a point and an axis, for the bodies as they are now.
   * \param worldPoint Point on the axis, in metres.
   * \param worldAxis Direction of the axis, need not have unit length.
   * \param body1 First body, not null.
   * \param body2 Second body, null for the world.
   * \throws std::invalid_argument When body1 is null, both bodies are the same or the axis has no length.
   */
  CylindricalJoint(zor::Vec3 const& worldPoint, zor::Vec3 const& worldAxis, zor::RigidBody* body1,
                   zor::RigidBody* body2 = nullptr);

  /** The two free degrees of freedom. */
  enum DOF : int {
    TRANSLATIONAL = 0, /**< Along the axis, in m. */
    ROTATIONAL = 1     /**< About the axis, in rad. */
  };

  /** \return Position in m or angle in rad of the given degree of freedom. */
  zor::Real getAngle(zor::CylindricalJoint::DOF dof) const;
  /** \return Speed in m/s or rad/s of the given degree of freedom. */
  zor::Real getSpeed(zor::CylindricalJoint::DOF dof) const;
  /** \return The motor of the given degree of freedom, owned by the constraint. */
  zor::Motor1D* getMotor1D(zor::CylindricalJoint::DOF dof) const;
  /** \return The range of the given degree of freedom, owned by the constraint. */
  zor::Range1D* getRange1D(zor::CylindricalJoint::DOF dof) const;
  /** \return The lock of the given degree of freedom, owned by the constraint. */
  zor::Lock1D* getLock1D(zor::CylindricalJoint::DOF dof) const;

protected:
  ~CylindricalJoint() override;
};

} // namespace zor
