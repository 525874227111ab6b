#include <zor/Prismatic.h>
#include <zor/RigidBody.h>

#include "bullet/MakeConstraint.h"

namespace zor {

namespace {

using Kind = zorBullet::ConstraintKind;
Kind const KIND{"Prismatic", 2, 3, {Kind::TRANSLATION}};

} // namespace

Prismatic::Prismatic(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint1DOF(zorBullet::makeAtFrames(KIND, body1, frame1, body2, frame2)) {}

Prismatic::Prismatic(Vec3 const& worldPoint, Vec3 const& worldAxis, RigidBody* body1, RigidBody* body2)
    : Constraint1DOF(zorBullet::makeAtPoint(KIND, worldPoint, worldAxis, body1, body2)) {}

Prismatic::Prismatic(Vec3 const& worldAxis, RigidBody* body1, RigidBody* body2)
    : Prismatic(body1 ? body1->getPosition() : Vec3(), worldAxis, body1, body2) {}

Prismatic::~Prismatic() = default;

} // namespace zor
