#include "bullet/CapsuleImpl.h"

#include <algorithm>

#include <BulletCollision/CollisionShapes/btCapsuleShape.h>

#include "bullet/RayClip.h"

namespace zorBullet {

CapsuleImpl::CapsuleImpl(double radius, double height) : m_radius(radius), m_half(0.5 * height) {}

void CapsuleImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  leaves.push_back(Leaf{nullptr, std::make_unique<btCapsuleShape>(m_radius, 2.0 * m_half), local});
}

bool CapsuleImpl::castRay(Ray const& ray, Hit& hit) const {
  btVector3 const axisPoint(0, std::clamp<double>(ray.origin.y(), -m_half, m_half), 0);
  if (ray.origin.distance2(axisPoint) <= m_radius * m_radius)
    return false; // starts inside, where entering one of the parts is no surface
  bool found = false;
  RayClip side(ray);
  if (side.slab(1, m_half) && side.cylinderY(m_radius))
    found = side.takeEntry(hit);
  for (double const y : {-m_half, m_half}) {
    RayClip end(ray);
    if (end.sphere(btVector3(0, y, 0), m_radius))
      found = end.takeEntry(hit) || found;
  }
  return found;
}

void CapsuleImpl::closest(btVector3 const& center, double, bool, SurfacePoints& found) const {
  btVector3 const axisPoint(0, std::clamp<double>(center.y(), -m_half, m_half), 0);
  btVector3 const away = center - axisPoint;
  double const length = away.length();
  btVector3 const normal = length > 0.0 ? away / length : btVector3(1, 0, 0);
  found.add({axisPoint + normal * m_radius, normal, length - m_radius});
}

MassData CapsuleImpl::massData() const {
  double const r2 = m_radius * m_radius;
  double const height = 2.0 * m_half;
  double const side = SIMD_PI * r2 * height;
  double const ends = 4.0 / 3.0 * SIMD_PI * r2 * m_radius; // both halves together
  MassData data;
  data.mass = side + ends;
  double const across = side * (height * height / 12.0 + r2 / 4.0) +
                        ends * (0.4 * r2 + 0.25 * height * height + 0.375 * height * m_radius);
  double const along = 0.5 * side * r2 + 0.4 * ends * r2;
  data.inertia.setValue(across, 0, 0, 0, along, 0, 0, 0, across);
  return data;
}

btVector3 CapsuleImpl::support(btVector3 const& direction) const {
  double const length = direction.length();
  btVector3 const end(0, direction.y() < 0.0 ? -m_half : m_half, 0);
  return length > 0.0 ? end + direction * (m_radius / length) : end;
}

} // namespace zorBullet
