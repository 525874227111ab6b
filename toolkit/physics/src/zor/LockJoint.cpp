#include <zor/LockJoint.h>

#include "bullet/MakeConstraint.h"

namespace zor {

namespace {

using Kind = zorBullet::ConstraintKind;
Kind const KIND{"LockJoint", 3, 3, {}};

} // namespace

LockJoint::LockJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint(zorBullet::makeAtFrames(KIND, body1, frame1, body2, frame2)) {}

LockJoint::LockJoint(RigidBody* body1, RigidBody* body2) : LockJoint(body1, nullptr, body2, nullptr) {}

LockJoint::~LockJoint() = default;

} // namespace zor
