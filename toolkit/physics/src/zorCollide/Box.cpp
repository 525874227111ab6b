#include <zorCollide/Box.h>

#include "bullet/BoxImpl.h"
#include "bullet/Check.h"
#include "bullet/Conversions.h"

namespace zorCollide {
namespace {

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zor::Vec3 const& half) {
  zorBullet::checkPositive("Box", "half extent along x", half.x());
  zorBullet::checkPositive("Box", "half extent along y", half.y());
  zorBullet::checkPositive("Box", "half extent along z", half.z());
  return std::make_unique<zorBullet::BoxImpl>(zorBullet::toBt(half));
}

} // namespace

Box::Box(zor::Vec3 const& halfExtents) : Shape(BOX, makeImpl(halfExtents)), m_halfExtents(halfExtents) {}

Box::Box(zor::Real x, zor::Real y, zor::Real z) : Box(zor::Vec3(x, y, z)) {}

void Box::setHalfExtents(zor::Vec3 const& halfExtents) {
  auto impl = makeImpl(halfExtents);
  m_halfExtents = halfExtents;
  replaceImpl(std::move(impl));
}

} // namespace zorCollide
