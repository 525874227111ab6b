#include <zorCollide/GeometryContact.h>

#include "bullet/Check.h"

namespace zorCollide {

Geometry* GeometryContact::getGeometry(zor::UInt index) const {
  zorBullet::checkIndex("GeometryContact", index, 2);
  return index == 0 ? m_geometry1.get() : m_geometry2.get();
}

zor::RigidBody* GeometryContact::getRigidBody(zor::UInt index) const {
  Geometry const* const geometry = getGeometry(index);
  return geometry ? geometry->getRigidBody() : nullptr;
}

zor::Vec3 GeometryContact::getForce() const {
  zor::Vec3 sum;
  for (ContactPoint const& point : m_points)
    sum += point.getForce();
  return sum;
}

bool GeometryContact::isSensorContact() const {
  return (m_geometry1 && m_geometry1->isSensor()) || (m_geometry2 && m_geometry2->isSensor());
}

} // namespace zorCollide
