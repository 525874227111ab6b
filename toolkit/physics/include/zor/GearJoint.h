#pragma once

#include <zor/Constraint.h>
#include <zor/Vec3.h>

namespace zor {

/** Makes two bodies turn at a fixed ratio, as gears, belts and chains do.
 *
 * It couples only the turning about the z axes of the two attachments; hinges or the like have to hold the
 * bodies on their axes. The one direction taken away is the turning of the second body, so that
 * getCurrentForce(0) is the torque that the first puts on it, and compliance and damping count there. */
class GearJoint : public Constraint {
public:
  /** Creates the joint from two axes, for the bodies as they are now.
   * \param body1 First body, not null.
   * \param axis1 Axis of the first body in world coordinates, need not have unit length.
   * \param body2 Second body, not null.
   * \param axis2 Axis of the second body in world coordinates.
   * \param ratio Turns of the second body for one turn of the first; negative for the opposite sense, as of
   *        two wheels whose teeth meet. Finite and not zero.
   * \throws std::invalid_argument When a body is null, both are the same, an axis has no length or the ratio
   * is not as said.
   */
  GearJoint(zor::RigidBody* body1, zor::Vec3 const& axis1, zor::RigidBody* body2, zor::Vec3 const& axis2,
            zor::Real ratio);

  /** Sets the ratio from now on.
   * \param ratio As for the constructor.
   * \throws std::invalid_argument When it is not finite or zero. */
  void setRatio(zor::Real ratio);
  /** \return Turns of the second body for one turn of the first. */
  zor::Real getRatio() const;

protected:
  ~GearJoint() override;
};

} // namespace zor
