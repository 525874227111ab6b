#pragma once

#include <zor/Constraint1DOF.h>

namespace zor {

/** A slider: body 1 moves along the z axis of the attachment frames and does not turn. The
 * position is zero where the attachment frames coincide. */
class Prismatic : public Constraint1DOF {
public:
  /** Creates the joint from attachment frames.
   * \param body1 First body, not null.
   * \param frame1 Attachment in the first body's model frame; null for the model frame itself.
   * \param body2 Second body, null for the world.
   * \param frame2 Attachment in the second body's model frame (the world's for a null body); null to take
   *        the place where the first attachment is now.
   * \throws std::invalid_argument When body1 is null or both bodies are the same.
   */
  Prismatic(zor::RigidBody* body1, zor::Frame* frame1, zor::RigidBody* body2 = nullptr,
            zor::Frame* frame2 = nullptr);

  /** Creates the joint from a point and an axis, for the bodies as they are now.
   * \param worldPoint Point on the axis, in metres.
   * \param worldAxis Direction of the axis, need not have unit length.
   * \param body1 First body, not null.
   * \param body2 Second body, null for the world.
   * \throws std::invalid_argument When body1 is null, both bodies are the same or the axis has no length.
   */
  Prismatic(zor::Vec3 const& worldPoint, zor::Vec3 const& worldAxis, zor::RigidBody* body1,
            zor::RigidBody* body2 = nullptr);

  /** Creates the joint through the first body's origin, for the bodies as they are now.
   * \param worldAxis Direction of the axis, need not have unit length.
   * \param body1 First body, not null.
   * \param body2 Second body, null for the world.
   * \throws std::invalid_argument When body1 is null, both bodies are the same or the axis has no length.
   */
  Prismatic(zor::Vec3 const& worldAxis, zor::RigidBody* body1, zor::RigidBody* body2 = nullptr);

protected:
  ~Prismatic() override;
};

} // namespace zor
