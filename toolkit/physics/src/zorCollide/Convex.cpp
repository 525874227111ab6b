#include <zorCollide/Convex.h>

#include <stdexcept>
#include <string>

#include "bullet/Check.h"
#include "bullet/Conversions.h"
#include "bullet/Hull.h"
#include "bullet/HullImpl.h"

namespace zorCollide {
namespace {

zorBullet::Hull makeHull(zor::Vec3Vector const& vertices) {
  if (vertices.size() < 4)
    throw std::invalid_argument("Convex: " + std::to_string(vertices.size()) +
                                " vertices, but at least 4 are needed");
  zorBullet::checkVertices("Convex", vertices);
  auto const points = zorBullet::toBt(vertices);
  zorBullet::Hull hull = zorBullet::Hull::of(points.data(), points.size());
  if (hull.volume <= 0.0)
    throw std::invalid_argument("Convex: the vertices lie in one plane");
  return hull;
}

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zor::Vec3Vector const& vertices,
                                               zor::UInt32Vector const& indices) {
  zorBullet::checkTriangles("Convex", indices, vertices.size());
  return std::make_unique<zorBullet::HullImpl>(makeHull(vertices), vertices, indices);
}

std::unique_ptr<zorBullet::ShapeImpl> makeImpl(zorBullet::Hull const& hull) {
  return std::make_unique<zorBullet::HullImpl>(hull, zor::Vec3Vector(), zor::UInt32Vector());
}

} // namespace

Convex::Convex(zor::Vec3Vector const& vertices) : Convex(makeHull(vertices)) {
  m_points = vertices;
}

Convex::Convex(zor::Vec3Vector const& vertices, zor::UInt32Vector const& indices)
    : Shape(CONVEX, makeImpl(vertices, indices)), m_vertices(vertices), m_indices(indices) {}

Convex::Convex(zorBullet::Hull const& hull)
    : Shape(CONVEX, makeImpl(hull)), m_indices(hull.indices.begin(), hull.indices.end()) {
  m_vertices.reserve(hull.corners.size());
  for (btVector3 const& corner : hull.corners)
    m_vertices.push_back(zorBullet::fromBt(corner));
}

Convex::~Convex() = default;

} // namespace zorCollide
