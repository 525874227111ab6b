#pragma once

#include <memory>

#include "bullet/ConstraintImpl.h"

namespace zorBullet {

// What the constructors of the kinds share. All throw std::invalid_argument for bad bodies, frames and axes.

std::unique_ptr<ConstraintImpl> makeAtFrames(ConstraintKind const& kind, zor::RigidBody* body1,
                                             zor::Frame* frame1, zor::RigidBody* body2, zor::Frame* frame2);

std::unique_ptr<ConstraintImpl> makeAtPoint(ConstraintKind const& kind, zor::Vec3 const& worldPoint,
                                            zor::Vec3 const& worldAxis, zor::RigidBody* body1,
                                            zor::RigidBody* body2);

/** The first attachment's x along one axis, the second's z along the other, which is at a right angle to it.
 */
std::unique_ptr<ConstraintImpl> makeAtCross(ConstraintKind const& kind, zor::Vec3 const& worldPoint,
                                            zor::Vec3 const& x, zor::Vec3 const& z, zor::RigidBody* body1,
                                            zor::RigidBody* body2);

} // namespace zorBullet
