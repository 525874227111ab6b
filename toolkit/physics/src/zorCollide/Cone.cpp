#include <zorCollide/Cone.h>

#include "bullet/Check.h"
#include "bullet/ConeImpl.h"

namespace zorCollide {
namespace {

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zor::Real radius, zor::Real height) {
  zorBullet::checkPositive("Cone", "radius", radius);
  zorBullet::checkPositive("Cone", "height", height);
  return std::make_unique<zorBullet::ConeImpl>(radius, height);
}

} // namespace

Cone::Cone(zor::Real radius, zor::Real height)
    : Shape(CONE, makeImpl(radius, height)), m_radius(radius), m_height(height) {}

void Cone::setRadius(zor::Real radius) {
  auto impl = makeImpl(radius, m_height);
  m_radius = radius;
  replaceImpl(std::move(impl));
}

void Cone::setHeight(zor::Real height) {
  auto impl = makeImpl(m_radius, height);
  m_height = height;
  replaceImpl(std::move(impl));
}

} // namespace zorCollide
