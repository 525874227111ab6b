#include <zorCollide/Capsule.h>

#include "bullet/CapsuleImpl.h"
#include "bullet/Check.h"

namespace zorCollide {
namespace {

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zor::Real radius, zor::Real height) {
  zorBullet::checkPositive("Capsule", "radius", radius);
  zorBullet::checkPositive("Capsule", "height", height);
  return std::make_unique<zorBullet::CapsuleImpl>(radius, height);
}

} // namespace

Capsule::Capsule(zor::Real radius, zor::Real height)
    : Shape(CAPSULE, makeImpl(radius, height)), m_radius(radius), m_height(height) {}

void Capsule::setRadius(zor::Real radius) {
  auto impl = makeImpl(radius, m_height);
  m_radius = radius;
  replaceImpl(std::move(impl));
}

void Capsule::setHeight(zor::Real height) {
  auto impl = makeImpl(m_radius, height);
  m_height = height;
  replaceImpl(std::move(impl));
}

} // namespace zorCollide
