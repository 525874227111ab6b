#include "bullet/MakeConstraint.h"

#include <cmath>
#include <stdexcept>

#include "zor/Checks.h"

namespace zorBullet {

std::unique_ptr<ConstraintImpl> makeAtFrames(ConstraintKind const& kind, zor::RigidBody* body1,
                                             zor::Frame* frame1, zor::RigidBody* body2, zor::Frame* frame2) {
  auto impl = std::make_unique<ConstraintImpl>(kind, body1, body2);
  impl->attach(frame1, frame2);
  return impl;
}

std::unique_ptr<ConstraintImpl> makeAtPoint(ConstraintKind const& kind, zor::Vec3 const& worldPoint,
                                            zor::Vec3 const& worldAxis, zor::RigidBody* body1,
                                            zor::RigidBody* body2) {
  zor::checkFinite(worldPoint, kind.name);
  zor::checkFinite(worldAxis, kind.name);
  if (!(worldAxis.length() > 0))
    throw std::invalid_argument(std::string(kind.name) + ": the axis has no length");
  auto impl = std::make_unique<ConstraintImpl>(kind, body1, body2);
  impl->attachAt(zor::AffineMatrix4x4(zor::Quat(zor::Vec3(0, 0, 1), worldAxis), worldPoint));
  return impl;
}

std::unique_ptr<ConstraintImpl> makeAtCross(ConstraintKind const& kind, zor::Vec3 const& worldPoint,
                                            zor::Vec3 const& x, zor::Vec3 const& z, zor::RigidBody* body1,
                                            zor::RigidBody* body2) {
  constexpr double SQUARE = 1e-6;
  zor::checkFinite(worldPoint, kind.name);
  zor::checkFinite(x, kind.name);
  zor::checkFinite(z, kind.name);
  zor::Vec3 const unitX = x.normal(), unitZ = z.normal();
  if (!(unitX.length2() > 0) || !(unitZ.length2() > 0) || std::abs(unitX.dot(unitZ)) > SQUARE)
    throw std::invalid_argument(std::string(kind.name) + ": the axes are not at a right angle");
  zor::Vec3 const unitY = unitZ.cross(unitX).normal();
  auto impl = std::make_unique<ConstraintImpl>(kind, body1, body2);
  impl->attachAt(zor::AffineMatrix4x4(zor::Matrix3x3(unitX, unitY, unitX.cross(unitY)), worldPoint));
  return impl;
}

} // namespace zorBullet
