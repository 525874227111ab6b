#pragma once

#include <zor/Constraint.h>
#include <zor/Lock1D.h>
#include <zor/Motor1D.h>
#include <zor/Range1D.h>

namespace zor {

/** Holds a wheel to a chassis: the wheel moves along the suspension's axis, is steered about it, and spins
 * about its axle, which stays at a right angle to it.
 *
 * The first body is the wheel, the x axis of its attachment the axle. The second is the chassis, the z axis
 * of its attachment points along the suspension, upwards. Angles and positions are those of the wheel against
 * the chassis. Suspension and steering are locked when created: give the first a spring by setSuspension, and
 * turn the second by setSteeringAngle or let it go. The motor of SPIN drives and, with speed zero, brakes. */
class WheelJoint : public Constraint {
public:
  /** Creates the joint from attachment frames.
   * \param body1 Wheel, not null.
   * \param frame1 Attachment in the wheel's model frame; null for the model frame itself.
   * \param body2 Chassis, null for the world.
   * \param frame2 Attachment in the chassis's model frame (the world's for a null body); null to take
   *        the place where the first attachment is now.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  WheelJoint(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2 = nullptr,
             zor::Frame* frame2 = nullptr);

  /** Creates the joint from a point and two axes, for the bodies as they are now.
   * \param worldPoint Centre of the wheel, in metres.
   * \param axle Direction in which the wheel's axle points, need not have unit length.
   * \param up Direction of the suspension and of the steering axis.
   * \param body1 Wheel, not null.
   * \param body2 Chassis, null for the world.
   * \throws std::invalid_argument When body1 is null, both bodies are the same or the axes are not at a right
   *         angle (to 1e-6).
   */
  WheelJoint(zor::Vec3 const& worldPoint, zor::Vec3 const& axle, zor::Vec3 const& up, zor::RigidBody* body1,
             zor::RigidBody* body2 = nullptr);

  /** The three free degrees of freedom. */
  enum DOF : int {
    SUSPENSION = 0, /**< Along the suspension's axis, in m; positive when the wheel is pushed up. */
    STEERING = 1,   /**< About the suspension's axis, in rad. */
    SPIN = 2        /**< About the axle, in rad. */
  };

  /** \return Position in m or angle in rad of the given degree of freedom. */
  zor::Real getAngle(zor::WheelJoint::DOF dof) const;
  /** \return Speed in m/s or rad/s of the given degree of freedom. */
  zor::Real getSpeed(zor::WheelJoint::DOF dof) const;
  /** \return The motor of the given degree of freedom, owned by the constraint. */
  zor::Motor1D* getMotor1D(zor::WheelJoint::DOF dof) const;
  /** \return The range of the given degree of freedom, owned by the constraint. */
  zor::Range1D* getRange1D(zor::WheelJoint::DOF dof) const;
  /** \return The lock of the given degree of freedom, owned by the constraint. */
  zor::Lock1D* getLock1D(zor::WheelJoint::DOF dof) const;

  /** Springs the wheel about the place in which it was joined.
   * \param stiffness In N/m, larger than zero and finite.
   * \param damping In N s/m, zero or more.
   * \param travel Lowest and highest position in m, where the wheel meets rigid stops.
   * \throws std::invalid_argument When a value is not as said.
   */
  void setSuspension(zor::Real stiffness, zor::Real damping, zor::RangeReal const& travel = zor::RangeReal());

  /** Locks the steering at an angle.
   * \param angle In rad, finite; positive turns the wheel counter-clockwise as seen from above. */
  void setSteeringAngle(zor::Real angle);

protected:
  ~WheelJoint() override;
};

} // namespace zor
