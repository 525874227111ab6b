#include <zor/Hinge.h>

#include "bullet/MakeConstraint.h"

namespace zor {

namespace {

using Kind = zorBullet::ConstraintKind;
Kind const KIND{"Hinge", 3, 2, {Kind::ROTATION}};

} // namespace

Hinge::Hinge(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint1DOF(zorBullet::makeAtFrames(KIND, body1, frame1, body2, frame2)) {}

Hinge::Hinge(Vec3 const& worldPoint, Vec3 const& worldAxis, RigidBody* body1, RigidBody* body2)
    : Constraint1DOF(zorBullet::makeAtPoint(KIND, worldPoint, worldAxis, body1, body2)) {}

Hinge::~Hinge() = default;

} // namespace zor
