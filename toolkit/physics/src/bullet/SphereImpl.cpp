#include "bullet/SphereImpl.h"

#include <BulletCollision/CollisionShapes/btSphereShape.h>

#include "bullet/RayClip.h"

namespace zorBullet {

SphereImpl::SphereImpl(double radius) : m_radius(radius) {}

void SphereImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  leaves.push_back(Leaf{nullptr, std::make_unique<btSphereShape>(m_radius), local});
}

bool SphereImpl::castRay(Ray const& ray, Hit& hit) const {
  RayClip clip(ray);
  return clip.sphere(btVector3(0, 0, 0), m_radius) && clip.takeEntry(hit);
}

void SphereImpl::closest(btVector3 const& center, double, bool, SurfacePoints& found) const {
  double const length = center.length();
  btVector3 const normal = length > 0.0 ? center / length : btVector3(0, 0, 1);
  found.add({normal * m_radius, normal, length - m_radius});
}

MassData SphereImpl::massData() const {
  MassData data;
  data.mass = 4.0 / 3.0 * SIMD_PI * m_radius * m_radius * m_radius;
  double const moment = 0.4 * data.mass * m_radius * m_radius;
  data.inertia.setValue(moment, 0, 0, 0, moment, 0, 0, 0, moment);
  return data;
}

btVector3 SphereImpl::support(btVector3 const& direction) const {
  double const length = direction.length();
  return length > 0.0 ? direction * (m_radius / length) : btVector3(m_radius, 0, 0);
}

} // namespace zorBullet
