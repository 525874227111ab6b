#include <zor/DistanceJoint.h>

#include <stdexcept>

#include "bullet/ConstraintImpl.h"
#include "zor/Checks.h"

namespace zor {

namespace {

using Impl = zorBullet::ConstraintImpl;

constexpr Real MIN_DISTANCE = 1e-6;

std::unique_ptr<Impl> make(RigidBody* body1, AffineMatrix4x4 const& local1, RigidBody* body2,
                           AffineMatrix4x4 const& local2) {
  using Kind = zorBullet::ConstraintKind;
  checkRigid(local1, "DistanceJoint");
  checkRigid(local2, "DistanceJoint");
  auto impl = std::make_unique<Impl>(Kind{"DistanceJoint", 0, 0, {Kind::DISTANCE}}, body1, body2);
  impl->attachLocal(0, local1);
  impl->attachLocal(1, local2);
  Real const distance = impl->position(0);
  if (distance < MIN_DISTANCE)
    throw std::invalid_argument("DistanceJoint: the points coincide");
  impl->freedom(0).lock->setPosition(distance);
  impl->freedom(0).lock->setEnable(true);
  return impl;
}

AffineMatrix4x4 localOf(Frame const* frame) {
  return frame ? frame->getLocalMatrix() : AffineMatrix4x4();
}

} // namespace

DistanceJoint::DistanceJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
    : Constraint1DOF(make(body1, localOf(frame1), body2, localOf(frame2))) {}

DistanceJoint::DistanceJoint(RigidBody* body1, Vec3 const& localPoint1, RigidBody* body2,
                             Vec3 const& localPoint2)
    : Constraint1DOF(make(body1, AffineMatrix4x4(localPoint1), body2, AffineMatrix4x4(localPoint2))) {}

DistanceJoint::DistanceJoint(RigidBody* body1, Vec3 const& localPoint1, Vec3 const& worldPoint)
    : DistanceJoint(body1, localPoint1, nullptr, worldPoint) {}

DistanceJoint::~DistanceJoint() = default;

} // namespace zor
