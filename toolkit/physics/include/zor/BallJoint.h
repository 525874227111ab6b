#pragma once

#include <zor/Constraint.h>

namespace zor {

/** A ball joint: holds a point of each body together and leaves all rotations free. */
class BallJoint : public Constraint {
public:
  /** Creates the joint from attachment frames.
   * \param body1 First body, not null.
   * \param frame1 Attachment in the first body's model frame; null for the model frame itself.
   * \param body2 Second body, null for the world.
   * \param frame2 Attachment in the second body's model frame (the world's for a null body); null to take
   *        the place where the first attachment is now.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  BallJoint(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2 = nullptr,
            zor::Frame* frame2 = nullptr);

  /** Creates the joint at a world point, for the bodies as they are now.
   * \param worldPoint Centre of the joint, in metres.
   * \param body1 First body, not null.
   * \param body2 Second body, null for the world.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  BallJoint(zor::Vec3 const& worldPoint, zor::RigidBody* body1, zor::RigidBody* body2 = nullptr);

  /** Creates the joint at a point of the first body.
   * \param body1 First body, not null.
   * \param localPoint Centre of the joint in the first body's model frame, in metres.
   * \param body2 Second body, null for the world.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  BallJoint(zor::RigidBody* body1, zor::Vec3 const& localPoint, zor::RigidBody* body2 = nullptr);

protected:
  ~BallJoint() override;
};

} // namespace zor
