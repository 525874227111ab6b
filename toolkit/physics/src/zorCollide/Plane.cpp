#include <zorCollide/Plane.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "bullet/Check.h"
#include "bullet/Conversions.h"
#include "bullet/PlaneImpl.h"

namespace zorCollide {
namespace {

zor::Vec3 makeNormal(zor::Vec3 const& normal) {
  zorBullet::checkFinite("Plane", "normal", normal);
  double const length = normal.length();
  if (!(length > 0.0))
    throw std::invalid_argument("Plane: normal has no length");
  if (std::abs(length - 1.0) < 4.0 * std::numeric_limits<double>::epsilon())
    return normal; // one that was normalised before keeps its last bits
  return normal * (1.0 / length);
}

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zor::Vec3 const& normal, zor::Vec3 const& point) {
  zorBullet::checkFinite("Plane", "point", point);
  zor::Vec3 const unit = makeNormal(normal);
  return std::make_unique<zorBullet::PlaneImpl>(zorBullet::toBt(unit), unit.dot(point));
}

} // namespace

Plane::Plane(zor::Vec3 const& normal, zor::Vec3 const& point)
    : Shape(PLANE, makeImpl(normal, point)), m_normal(makeNormal(normal)), m_point(point) {}

Plane::Plane(zor::Plane const& plane) : Plane(plane.getNormal(), plane.getPoint()) {}

zor::Plane Plane::getPlane() const {
  return zor::Plane(m_normal, m_point);
}

} // namespace zorCollide
