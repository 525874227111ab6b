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

void ConeImpl::closest(btVector3 const& center, double, bool, SurfacePoints& found) const {
  // In the half plane through the axis and the point: a right triangle with the tip on the axis.
  double const across = std::hypot(center.x(), center.z());
  btVector3 const outward =
      across > 0.0 ? btVector3(center.x() / across, 0, center.z() / across) : btVector3(1, 0, 0);
  double const height = 2.0 * m_half, slant = std::hypot(height, m_radius);
  double const sideX = height / slant, sideY = m_radius / slant; // normal of the side
  double const side = sideX * across + sideY * (center.y() - m_half), base = -m_half - center.y();
  if (side <= 0.0 && base <= 0.0) {
    btVector3 const normal = side > base ? outward * sideX + btVector3(0, sideY, 0) : btVector3(0, -1, 0);
    double const distance = std::max(side, base);
    found.add({center - normal * distance, normal, distance});
    return;
  }
  // Outside: the nearest point of the side line or of the base disc.
  double const along =
      std::clamp((across * m_radius + (m_half - center.y()) * height) / (slant * slant), 0.0, 1.0);
  btVector3 const onSide = outward * (along * m_radius) + btVector3(0, m_half - along * height, 0);
  btVector3 const onBase = outward * std::min(across, m_radius) + btVector3(0, -m_half, 0);
  btVector3 const nearest = center.distance2(onSide) <= center.distance2(onBase) ? onSide : onBase;
  btVector3 const away = center - nearest;
  double const distance = away.length();
  btVector3 const normal = distance > 0.0 ? away / distance : outward * sideX + btVector3(0, sideY, 0);
  found.add({nearest, normal, distance});
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
