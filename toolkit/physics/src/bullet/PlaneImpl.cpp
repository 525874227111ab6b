#include "bullet/PlaneImpl.h"

#include <BulletCollision/CollisionShapes/btStaticPlaneShape.h>

namespace zorBullet {

void PlaneImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  leaves.push_back(Leaf{nullptr, std::make_unique<btStaticPlaneShape>(m_normal, m_constant), local});
}

bool PlaneImpl::castRay(Ray const& ray, Hit& hit) const {
  double const height = m_normal.dot(ray.origin) - m_constant;
  double const speed = m_normal.dot(ray.direction);
  if (speed == 0.0)
    return false;
  double const distance = -height / speed;
  if (distance < 0.0 || distance >= hit.distance)
    return false;
  hit.distance = distance;
  hit.normal = speed < 0.0 ? m_normal : -m_normal;
  hit.triangle = -1;
  return true;
}

void PlaneImpl::closest(btVector3 const& center, double, bool, SurfacePoints& found) const {
  double const distance = m_normal.dot(center) - m_constant;
  found.add({center - m_normal * distance, m_normal, distance});
}

void PlaneImpl::bounds(btTransform const&, btVector3& lower, btVector3& upper) const {
  upper = btVector3(BT_LARGE_FLOAT, BT_LARGE_FLOAT, BT_LARGE_FLOAT);
  lower = -upper;
}

} // namespace zorBullet
