#include <zor/BallJoint.h>
#include <zor/RigidBody.h>

#include "bullet/MakeConstraint.h"

namespace zor {

namespace {

using Kind = zorBullet::ConstraintKind;
Kind const KIND{"BallJoint", 3, 0, {}};

} // namespace

BallJoint::BallJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint(zorBullet::makeAtFrames(KIND, body1, frame1, body2, frame2)) {}

BallJoint::BallJoint(Vec3 const& worldPoint, RigidBody* body1, RigidBody* body2)
    : Constraint(zorBullet::makeAtPoint(KIND, worldPoint, Vec3(0, 0, 1), body1, body2)) {}

BallJoint::BallJoint(RigidBody* body1, Vec3 const& localPoint, RigidBody* body2)
    : BallJoint(body1 ? body1->getTransform().transformPoint(localPoint) : Vec3(), body1, body2) {}

BallJoint::~BallJoint() = default;

} // namespace zor
