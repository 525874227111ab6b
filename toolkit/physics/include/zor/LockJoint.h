#pragma once

#include <zor/Constraint.h>

namespace zor {

/** Holds two bodies together without any freedom. */
class LockJoint : public Constraint {
public:
  /** Creates the joint from attachment frames.
   * \param body1 First body, not null.
   * \param frame1 Attachment in the first body's model frame; null for the model frame itself.
   * \param body2 Second body, null for the world.
   * \param frame2 Attachment in the second body's model frame (the world's for a null body); null to take
   *        the place where the first attachment is now.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  LockJoint(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2 = nullptr,
            zor::Frame* frame2 = nullptr);

  /** Locks the bodies together as they are now.
   * \param body1 First body, not null.
   * \param body2 Second body, null for the world.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  explicit LockJoint(zor::RigidBody* body1, zor::RigidBody* body2 = nullptr);

protected:
  ~LockJoint() override;
};

} // namespace zor
