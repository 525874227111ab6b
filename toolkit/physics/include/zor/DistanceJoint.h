#pragma once

#include <zor/Constraint1DOF.h>

namespace zor {

/** Holds two points at a distance.
 *
 * The degree of freedom is the distance itself. The lock is on when created, at the distance that the points
 * have then; zor::Lock1D::setSpring makes it a spring and damper. Switched off, the range makes a rope or a
 * bumper and the motor a winch. */
class DistanceJoint : public Constraint1DOF {
public:
  /** Creates the joint from attachment frames.
   * \param body1 First body, not null.
   * \param frame1 Attachment in the first body's model frame; null for the model frame itself.
   * \param body2 Second body, null for the world.
   * \param frame2 Attachment in the second body's model frame (the world's for a null body); null for the
   *        frame itself.
   * \throws std::invalid_argument When body1 is null, both bodies are the same or the points coincide.
   */
  DistanceJoint(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2 = nullptr,
                zor::Frame* frame2 = nullptr);

  /** Creates the joint between a point of a body and a point of the world or of another body.
   * \param body1 First body, not null.
   * \param localPoint1 Point in the first body's model frame, in metres.
   * \param body2 Second body, null for the world.
   * \param localPoint2 Point in the second body's model frame, or in the world.
   * \throws std::invalid_argument When body1 is null, both bodies are the same or the points coincide.
   */
  DistanceJoint(zor::RigidBody* body1, zor::Vec3 const& localPoint1, zor::RigidBody* body2,
                zor::Vec3 const& localPoint2);

  /** Creates the joint between a point of a body and a point of the world.
   * \param body1 Body, not null.
   * \param localPoint1 Point in the body's model frame, in metres.
   * \param worldPoint Point in the world, in metres.
   * \throws std::invalid_argument When body1 is null or the points coincide.
   */
  DistanceJoint(zor::RigidBody* body1, zor::Vec3 const& localPoint1, zor::Vec3 const& worldPoint);

protected:
  ~DistanceJoint() override;
};

} // namespace zor
