#include "bullet/HullImpl.h"

#include <algorithm>
#include <cmath>

#include <BulletCollision/CollisionShapes/btConvexHullShape.h>

#include "bullet/RayClip.h"
#include "bullet/RayTriangle.h"

namespace zorBullet {

namespace {

// More corners cost time at every contact and are not felt.
constexpr size_t maxCorners = 256;

} // namespace

std::unique_ptr<btCollisionShape> makeHullShape(std::vector<btVector3> const& corners) {
  auto shape = std::make_unique<btConvexHullShape>();
  btVector3 lower = corners.front(), upper = corners.front();
  for (btVector3 const& corner : corners) {
    shape->addPoint(corner, false);
    lower.setMin(corner);
    upper.setMax(corner);
  }
  btVector3 const size = upper - lower;
  // The engine adds the margin outside; large enough that resting contacts need no deep penetration test.
  shape->setMargin(
      std::min<double>(0.002, std::max(0.005 * size[size.minAxis()], 1e-4 * size[size.maxAxis()])));
  shape->recalcLocalAabb();
  return shape;
}

HullImpl::HullImpl(Hull hull, zor::Vec3Vector const& vertices, zor::UInt32Vector const& indices)
    : m_hull(std::move(hull)), m_vertices(toBt(vertices)), m_indices(indices.begin(), indices.end()) {}

void HullImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  leaves.push_back(Leaf{nullptr, makeHullShape(m_hull.reducedCorners(maxCorners)), local});
}

bool HullImpl::castRay(Ray const& ray, Hit& hit) const {
  RayClip clip(ray);
  for (size_t face = 0; face < m_hull.normals.size(); ++face)
    if (!clip.halfSpace(m_hull.normals[face], m_hull.constants[face], static_cast<long>(face)))
      return false;
  if (!clip.takeEntry(hit))
    return false;
  if (!m_indices.empty())
    hit.triangle = findTriangle(ray);
  return true;
}

long HullImpl::findTriangle(Ray const& ray) const {
  Hit nearest;
  for (size_t i = 0; i + 2 < m_indices.size(); i += 3)
    if (hitTriangle(ray, m_vertices[m_indices[i]], m_vertices[m_indices[i + 1]], m_vertices[m_indices[i + 2]],
                    nearest))
      nearest.triangle = static_cast<long>(i / 3);
  return nearest.triangle;
}

void closestOnHull(Hull const& hull, btVector3 const& center, double reach, SurfacePoints& found) {
  // The face whose plane is farthest below the point: exact inside, and a bound outside.
  double height = -BT_LARGE_FLOAT;
  size_t highest = 0;
  for (size_t face = 0; face < hull.normals.size(); ++face) {
    double const distance = hull.normals[face].dot(center) - hull.constants[face];
    if (distance > height) {
      height = distance;
      highest = face;
    }
  }
  if (height > reach)
    return;
  if (height <= 0.0) {
    found.add({center - hull.normals[highest] * height, hull.normals[highest], height});
    return;
  }
  btVector3 nearest = center;
  double least = BT_LARGE_FLOAT;
  for (size_t face = 0; face < hull.normals.size(); ++face) {
    if (hull.normals[face].dot(center) - hull.constants[face] <= 0.0)
      continue; // seen from behind
    btVector3 const point =
        closestOnTriangle(center, hull.corners[hull.indices[3 * face]],
                          hull.corners[hull.indices[3 * face + 1]], hull.corners[hull.indices[3 * face + 2]]);
    double const distance2 = point.distance2(center);
    if (distance2 < least) {
      least = distance2;
      nearest = point;
    }
  }
  double const distance = std::sqrt(least);
  btVector3 const normal = distance > 1e-12 ? (center - nearest) / distance : hull.normals[highest];
  found.add({nearest, normal, distance});
}

void HullImpl::closest(btVector3 const& center, double reach, bool, SurfacePoints& found) const {
  closestOnHull(m_hull, center, reach, found);
}

MassData HullImpl::massData() const {
  return solidMassData(m_hull.corners.data(), m_hull.corners.size(), m_hull.indices.data(),
                       m_hull.indices.size());
}

btVector3 HullImpl::support(btVector3 const& direction) const {
  double distance = 0.0;
  long const count = static_cast<long>(m_hull.corners.size());
  return m_hull.corners[static_cast<size_t>(direction.maxDot(m_hull.corners.data(), count, distance))];
}

} // namespace zorBullet
