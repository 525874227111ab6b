#include <zor/GearJoint.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "bullet/MakeConstraint.h"
#include "zor/Checks.h"

namespace zor {

namespace {

using Impl = zorBullet::ConstraintImpl;

double checkRatio(Real ratio) {
  if (!std::isfinite(ratio) || ratio == 0)
    throw std::invalid_argument("GearJoint: the ratio must be finite and not zero, is " +
                                std::to_string(ratio));
  return ratio;
}

std::unique_ptr<Impl> make(RigidBody* body1, Vec3 const& axis1, RigidBody* body2, Vec3 const& axis2,
                           Real ratio) {
  static zorBullet::ConstraintKind const KIND{"GearJoint", 0, 0, {}, true};
  checkNotNull(body2, "GearJoint");
  auto impl = zorBullet::makeAtPoint(KIND, Vec3(), axis1, body1, body2);
  auto const second = zorBullet::makeAtPoint(KIND, Vec3(), axis2, body2, body1); // only for its axis
  impl->attachLocal(1, second->attachment(0)->getLocalMatrix());
  impl->gearRatio = checkRatio(ratio);
  return impl;
}

} // namespace

GearJoint::GearJoint(RigidBody* body1, Vec3 const& axis1, RigidBody* body2, Vec3 const& axis2, Real ratio)
    : Constraint(make(body1, axis1, body2, axis2, ratio)) {}

void GearJoint::setRatio(Real ratio) {
  m_impl->gearRatio = checkRatio(ratio);
  m_impl->wake();
}

Real GearJoint::getRatio() const {
  return m_impl->gearRatio;
}

GearJoint::~GearJoint() = default;

} // namespace zor
