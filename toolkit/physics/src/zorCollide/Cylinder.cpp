#include <zorCollide/Cylinder.h>

#include "bullet/Check.h"
#include "bullet/CylinderImpl.h"

namespace zorCollide {
namespace {

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zor::Real radius, zor::Real height) {
  zorBullet::checkPositive("Cylinder", "radius", radius);
  zorBullet::checkPositive("Cylinder", "height", height);
  return std::make_unique<zorBullet::CylinderImpl>(radius, height);
}

} // namespace

Cylinder::Cylinder(zor::Real radius, zor::Real height)
    : Shape(CYLINDER, makeImpl(radius, height)), m_radius(radius), m_height(height) {}

void Cylinder::setRadius(zor::Real radius) {
  auto impl = makeImpl(radius, m_height);
  m_radius = radius;
  replaceImpl(std::move(impl));
}

void Cylinder::setHeight(zor::Real height) {
  auto impl = makeImpl(m_radius, height);
  m_height = height;
  replaceImpl(std::move(impl));
}

} // namespace zorCollide
