#include "bullet/MeshImpl.h"

#include <algorithm>

#include "bullet/ConvexParts.h"
#include "bullet/HullImpl.h"
#include "bullet/RayTriangle.h"

namespace zorBullet {
namespace {

constexpr size_t maxPartCorners = 128;

/** Tests the triangles that the tree proposes. */
class NearestTriangle final : public btTriangleCallback {
public:
  NearestTriangle(Ray const& ray, Hit& hit) : m_ray(ray), m_hit(hit) {}

  void processTriangle(btVector3* triangle, int, int index) override {
    if (!hitTriangle(m_ray, triangle[0], triangle[1], triangle[2], m_hit))
      return;
    m_hit.triangle = index;
    found = true;
  }

  bool found = false;

private:
  Ray const& m_ray;
  Hit& m_hit;
};

} // namespace

MeshImpl::MeshImpl(std::shared_ptr<MeshData const> data, size_t numParts)
    : m_data(std::move(data)), m_numParts(numParts) {}

void MeshImpl::build(btTransform const& local, bool moving, LeafSet& leaves) const {
  if (moving) {
    buildParts(local, leaves);
    return;
  }
  btBvhTriangleMeshShape& tree = m_data->tree();
  auto shape = std::make_unique<btBvhTriangleMeshShape>(&m_data->triangles(),
                                                        tree.usesQuantizedAabbCompression(), false);
  shape->setOptimizedBvh(tree.getOptimizedBvh());
  shape->setTriangleInfoMap(&m_data->edges());
  btVector3 lower, upper;
  shape->getAabb(btTransform::getIdentity(), lower, upper);
  shape->setMargin(std::min(0.002, 0.001 * (upper - lower).length())); // the engine thickens both sides by it
  leaves.push_back(Leaf{m_data, std::move(shape), local});
}

void MeshImpl::buildParts(btTransform const& local, LeafSet& leaves) const {
  if (m_numParts == 1) {
    leaves.push_back(Leaf{nullptr, makeHullShape(m_data->hull().reducedCorners(maxPartCorners)), local});
    return;
  }
  for (Hull const& part : makeConvexParts(*m_data, m_numParts))
    leaves.push_back(Leaf{nullptr, makeHullShape(part.reducedCorners(maxPartCorners)), local});
}

bool MeshImpl::castRay(Ray const& ray, Hit& hit) const {
  btBvhTriangleMeshShape& tree = m_data->tree();
  btVector3 lower, upper;
  tree.getAabb(btTransform::getIdentity(), lower, upper);
  double const reach = ((lower + upper) * 0.5).distance(ray.origin) + (upper - lower).length();
  NearestTriangle nearest(ray, hit);
  tree.performRaycast(&nearest, ray.origin, ray.origin + ray.direction * std::min(reach, hit.distance));
  return nearest.found;
}

void MeshImpl::closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const {
  if (moving) {
    for (Hull const& part : parts())
      closestOnHull(part, center, reach, found);
    return;
  }
  m_data->nearTree().visitNear(center, reach, [&](TriangleTree::Triangle const& triangle) {
    btVector3 const point =
        closestOnTriangle(center, triangle.corners[0], triangle.corners[1], triangle.corners[2]);
    btVector3 const away = center - point;
    double const distance = away.length();
    if (distance > reach)
      return;
    btVector3 const across =
        (triangle.corners[1] - triangle.corners[0]).cross(triangle.corners[2] - triangle.corners[0]);
    if (distance > 1e-12)
      found.add({point, away / distance, distance});
    else if (across.length2() > 0.0)
      found.add({point, across.normalized(), distance});
  });
  found.dropHidden(1e-3 * reach);
}

std::vector<Hull> const& MeshImpl::parts() const {
  std::call_once(m_partsOnce, [this] {
    if (m_numParts == 1)
      m_parts.push_back(m_data->hull());
    else
      m_parts = makeConvexParts(*m_data, m_numParts);
  });
  return m_parts;
}

void MeshImpl::bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const {
  // The outermost vertices are corners of the hull.
  std::vector<btVector3> const& corners = m_data->hull().corners;
  upper = lower = frame(corners.front());
  for (btVector3 const& corner : corners) {
    btVector3 const point = frame(corner);
    lower.setMin(point);
    upper.setMax(point);
  }
}

} // namespace zorBullet
