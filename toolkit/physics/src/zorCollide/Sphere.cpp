#include <zorCollide/Sphere.h>

#include "bullet/Check.h"
#include "bullet/SphereImpl.h"

namespace zorCollide {
namespace {

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zor::Real radius) {
  return std::make_unique<zorBullet::SphereImpl>(zorBullet::checkPositive("Sphere", "radius", radius));
}

} // namespace

Sphere::Sphere(zor::Real radius) : Shape(SPHERE, makeImpl(radius)), m_radius(radius) {}

void Sphere::setRadius(zor::Real radius) {
  auto impl = makeImpl(radius);
  m_radius = radius;
  replaceImpl(std::move(impl));
}

} // namespace zorCollide
