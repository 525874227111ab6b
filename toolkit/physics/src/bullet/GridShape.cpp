#include "bullet/GridShape.h"

#include <algorithm>
#include <cmath>

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>
#include <BulletCollision/CollisionShapes/btTriangleShape.h>

namespace zorBullet {
namespace {

constexpr double tolerance = 1e-7; // of a cosine: about 0.03 degrees

/** Cell in which a coordinate along one side lies. */
size_t cellAt(double coordinate, double size, double step, size_t numSamples) {
  double const cell = std::floor((coordinate + 0.5 * size) / step);
  return static_cast<size_t>(std::clamp(cell, 0.0, static_cast<double>(numSamples - 2)));
}

btVector3 upwardNormal(btVector3 const& a, btVector3 const& b, btVector3 const& c) {
  btVector3 const normal = (b - a).cross(c - a).normalized();
  return normal.z() < 0.0 ? -normal : normal;
}

/** Moves the contact onto the plane of the triangle, below the point on the other object. */
void reset(btManifoldPoint& point, btCollisionObjectWrapper const& triangle, bool isFirst,
           btVector3 const& corner, btVector3 const& normal) {
  btVector3 const& other = isFirst ? point.m_positionWorldOnB : point.m_positionWorldOnA;
  double const distance = normal.dot(other - corner);
  btVector3 const foot = other - normal * distance;
  (isFirst ? point.m_positionWorldOnA : point.m_positionWorldOnB) = foot;
  (isFirst ? point.m_localPointA : point.m_localPointB) =
      triangle.getCollisionObject()->getWorldTransform().invXform(foot);
  point.m_normalWorldOnB = isFirst ? -normal : normal;
  point.m_distance1 = distance;
}

} // namespace

GridShape::GridShape(std::shared_ptr<HeightGrid const> grid, double top)
    : btHeightfieldTerrainShape(static_cast<int>(grid->numX), static_cast<int>(grid->numY),
                                grid->heights.data(), grid->lowest, top, 2, true),
      m_grid(std::move(grid)) {
  setLocalScaling(btVector3(m_grid->stepX(), m_grid->stepY(), 1.0));
}

double GridShape::steepest(size_t x, size_t y, btVector3 const& normal) const {
  double least = 1.0;
  for (size_t cellY = y > 0 ? y - 1 : 0; cellY <= std::min(y + 1, m_grid->numY - 2); ++cellY)
    for (size_t cellX = x > 0 ? x - 1 : 0; cellX <= std::min(x + 1, m_grid->numX - 2); ++cellX) {
      btVector3 const low = m_grid->point(cellX, cellY), high = m_grid->point(cellX + 1, cellY + 1);
      least = std::min({least, normal.dot(upwardNormal(low, m_grid->point(cellX + 1, cellY), high)),
                        normal.dot(upwardNormal(low, high, m_grid->point(cellX, cellY + 1)))});
    }
  return least;
}

void GridShape::straighten(btManifoldPoint& point, btCollisionObjectWrapper const& triangle, bool isFirst) {
  if (triangle.getCollisionShape()->getShapeType() != TRIANGLE_SHAPE_PROXYTYPE || !triangle.m_parent ||
      triangle.m_parent->getCollisionShape()->getShapeType() != TERRAIN_SHAPE_PROXYTYPE)
    return;
  auto const& shape = static_cast<GridShape const&>(*triangle.m_parent->getCollisionShape());
  btVector3 const* const corners =
      static_cast<btTriangleShape const*>(triangle.getCollisionShape())->m_vertices1;
  btVector3 const local = upwardNormal(corners[0], corners[1], corners[2]);
  btMatrix3x3 const& basis = triangle.getWorldTransform().getBasis();
  btVector3 const normal = basis * local;
  double const upright = normal.dot(isFirst ? -point.m_normalWorldOnB : point.m_normalWorldOnB);
  if (upright >= 1.0 - tolerance)
    return;
  btVector3 const middle = (corners[0] + corners[1] + corners[2]) / 3.0;
  HeightGrid const& grid = *shape.m_grid;
  size_t const x = cellAt(middle.x(), grid.sizeX, grid.stepX(), grid.numX);
  size_t const y = cellAt(middle.y(), grid.sizeY, grid.stepY(), grid.numY);
  if (upright < shape.steepest(x, y, local) - tolerance)
    reset(point, triangle, isFirst, triangle.getWorldTransform()(corners[0]), normal);
}

} // namespace zorBullet
