#include "bullet/ConeImpl.h"

#include <algorithm>
#include <cmath>

#include <BulletCollision/CollisionShapes/btConeShape.h>

#include "bullet/RayClip.h"

namespace zorBullet {

ConeImpl::ConeImpl(double radius, double height) : m_radius(radius), m_half(0.5 * height) {}

void ConeImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  auto shape = std::make_unique<btConeShape>(m_radius, 2.0 * m_half);
  shape->setMargin(std::min(0.002, 0.005 * std::min(m_radius, m_half))); // the engine adds it outside
  leaves.push_back(Leaf{nullptr, std::move(shape), local});
}

bool ConeImpl::castRay(Ray const& ray, Hit& hit) const {
  RayClip clip(ray);
  return clip.slab(1, m_half) && clip.coneY(m_half, m_radius / (2.0 * m_half)) && clip.takeEntry(hit);
}

MassData ConeImpl::massData() const {
  double const r2 = m_radius * m_radius;
  double const height = 2.0 * m_half;
  MassData data;
  data.mass = SIMD_PI * r2 * height / 3.0;
  data.center = btVector3(0, -0.25 * height, 0); // a quarter of the height above the base
  double const across = data.mass * (0.15 * r2 + 0.0375 * height * height);
  data.inertia.setValue(across, 0, 0, 0, 0.3 * data.mass * r2, 0, 0, 0, across);
  return data;
}

btVector3 ConeImpl::support(btVector3 const& direction) const {
  double const across = std::hypot(direction.x(), direction.z());
  // The tip wins where the direction is steeper than the normal of the side.
  if (direction.y() * 2.0 * m_half > across * m_radius)
    return btVector3(0, m_half, 0);
  double const scale = across > 0.0 ? m_radius / across : 0.0;
  return btVector3(direction.x() * scale, -m_half, direction.z() * scale);
}

} // namespace zorBullet
