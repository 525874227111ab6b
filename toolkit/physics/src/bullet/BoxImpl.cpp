#include "bullet/BoxImpl.h"

#include <cmath>

#include <BulletCollision/CollisionShapes/btBoxShape.h>

#include "bullet/RayClip.h"

namespace zorBullet {

BoxImpl::BoxImpl(btVector3 const& halfExtents) : m_half(halfExtents) {}

void BoxImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  leaves.push_back(Leaf{nullptr, std::make_unique<btBoxShape>(m_half), local});
}

bool BoxImpl::castRay(Ray const& ray, Hit& hit) const {
  RayClip clip(ray);
  return clip.slab(0, m_half.x()) && clip.slab(1, m_half.y()) && clip.slab(2, m_half.z()) &&
         clip.takeEntry(hit);
}

void BoxImpl::closest(btVector3 const& center, double, bool, SurfacePoints& found) const {
  btVector3 inside = center;
  inside.setMax(-m_half);
  inside.setMin(m_half);
  btVector3 const away = center - inside;
  double const distance = away.length();
  if (distance > 0.0) {
    found.add({inside, away / distance, distance});
    return;
  }
  btVector3 const depth = m_half - center.absolute();
  int const axis = depth.minAxis();
  btVector3 normal(0, 0, 0);
  normal[axis] = center[axis] < 0.0 ? -1.0 : 1.0;
  found.add({center + normal * depth[axis], normal, -depth[axis]});
}

MassData BoxImpl::massData() const {
  MassData data;
  data.mass = 8.0 * m_half.x() * m_half.y() * m_half.z();
  btVector3 const squares = m_half * m_half * (data.mass / 3.0);
  for (int axis = 0; axis < 3; ++axis)
    data.inertia[axis][axis] = squares[(axis + 1) % 3] + squares[(axis + 2) % 3];
  return data;
}

btVector3 BoxImpl::support(btVector3 const& d) const {
  return btVector3(std::copysign(m_half.x(), d.x()), std::copysign(m_half.y(), d.y()),
                   std::copysign(m_half.z(), d.z()));
}

} // namespace zorBullet
