#include "bullet/CylinderImpl.h"

#include <algorithm>
#include <cmath>

#include <BulletCollision/CollisionShapes/btCylinderShape.h>

#include "bullet/RayClip.h"

namespace zorBullet {

CylinderImpl::CylinderImpl(double radius, double height) : m_radius(radius), m_half(0.5 * height) {}

void CylinderImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  btVector3 const half(m_radius, m_half, m_radius);
  leaves.push_back(Leaf{nullptr, std::make_unique<btCylinderShape>(half), local});
}

bool CylinderImpl::castRay(Ray const& ray, Hit& hit) const {
  RayClip clip(ray);
  return clip.slab(1, m_half) && clip.cylinderY(m_radius) && clip.takeEntry(hit);
}

void CylinderImpl::closest(btVector3 const& center, double, bool, SurfacePoints& found) const {
  double const across = std::hypot(center.x(), center.z());
  btVector3 const outward =
      across > 0.0 ? btVector3(center.x() / across, 0, center.z() / across) : btVector3(1, 0, 0);
  double const side = across - m_radius, end = std::abs(center.y()) - m_half;
  btVector3 const endNormal(0, center.y() < 0.0 ? -1 : 1, 0);
  if (side <= 0.0 && end <= 0.0) {
    btVector3 const normal = side > end ? outward : endNormal;
    double const distance = std::max(side, end);
    found.add({center - normal * distance, normal, distance});
    return;
  }
  btVector3 const away = outward * std::max(side, 0.0) + endNormal * std::max(end, 0.0);
  double const distance = away.length();
  found.add({center - away, away / distance, distance});
}

MassData CylinderImpl::massData() const {
  double const r2 = m_radius * m_radius;
  MassData data;
  data.mass = SIMD_PI * r2 * 2.0 * m_half;
  double const across = data.mass * (r2 / 4.0 + m_half * m_half / 3.0);
  data.inertia.setValue(across, 0, 0, 0, 0.5 * data.mass * r2, 0, 0, 0, across);
  return data;
}

btVector3 CylinderImpl::support(btVector3 const& direction) const {
  double const across = std::hypot(direction.x(), direction.z());
  double const scale = across > 0.0 ? m_radius / across : 0.0;
  return btVector3(direction.x() * scale, std::copysign(m_half, direction.y()), direction.z() * scale);
}

} // namespace zorBullet
