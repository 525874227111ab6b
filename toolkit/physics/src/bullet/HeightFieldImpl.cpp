#include "bullet/HeightFieldImpl.h"

#include <algorithm>
#include <cmath>

#include "bullet/GridShape.h"
#include "bullet/RayTriangle.h"

namespace zorBullet {
namespace {

/** Walks along one axis of the grid, from cell border to cell border. */
struct Walk {
  long cell = 0;
  long step = 0;      // +1, -1, or 0 where the ray does not leave the cell along this axis
  double next = 0.0;  // distance at which the ray leaves the cell
  double delta = 0.0; // distance between two borders

  Walk(double at, double direction, double cellSize, size_t numCells, double traveled) {
    cell = std::clamp(static_cast<long>(std::floor(at / cellSize)), 0L, static_cast<long>(numCells) - 1);
    if (direction == 0.0) {
      next = delta = std::numeric_limits<double>::infinity();
      return;
    }
    step = direction > 0.0 ? 1 : -1;
    delta = cellSize / std::abs(direction);
    double const border = static_cast<double>(cell + (step > 0 ? 1 : 0)) * cellSize;
    next = traveled + (border - at) / direction;
  }

  bool advance(size_t numCells) {
    cell += step;
    next += delta;
    return cell >= 0 && cell < static_cast<long>(numCells);
  }
};

bool isOverTriangle(btVector3 const& p, btVector3 const& a, btVector3 const& b, btVector3 const& c) {
  auto const side = [&p](btVector3 const& from, btVector3 const& to) {
    return (to.x() - from.x()) * (p.y() - from.y()) - (to.y() - from.y()) * (p.x() - from.x());
  };
  return side(a, b) >= 0.0 && side(b, c) >= 0.0 && side(c, a) >= 0.0;
}

/** The ground is solid: a sphere whose centre is below its column's face is pushed up along that face's
 * normal. */
void closestOnFace(btVector3 const& center, double reach, btVector3 const& a, btVector3 const& b,
                   btVector3 const& c, double& below, SurfacePoints& found) {
  btVector3 const up = (b - a).cross(c - a).normalized();
  double const height = up.dot(center - a);
  if (height <= 0.0) {
    if (isOverTriangle(center, a, b, c)) {
      below = std::min(below, height - 1e-12);
      found.clear();
      found.add({center - up * height, up, height});
    }
    return;
  }
  if (height > reach || below < 0.0)
    return;
  btVector3 const point = closestOnTriangle(center, a, b, c);
  btVector3 const away = center - point;
  double const distance = away.length();
  if (distance <= reach)
    found.add({point, distance > 1e-12 ? away / distance : up, distance});
}

} // namespace

void HeightFieldImpl::build(btTransform const& local, bool, LeafSet& leaves) const {
  HeightGrid const& grid = *m_grid;
  // The engine centres the field between the two heights that it is given, and needs them apart.
  double const top = std::max(grid.highest, grid.lowest + 1e-6);
  auto shape = std::make_unique<GridShape>(m_grid, top);
  shape->setMargin(std::min(0.002, 0.001 * std::hypot(grid.sizeX, grid.sizeY)));
  btTransform const lifted(btMatrix3x3::getIdentity(), btVector3(0, 0, 0.5 * (grid.lowest + top)));
  leaves.push_back(Leaf{m_grid, std::move(shape), local * lifted});
}

bool HeightFieldImpl::clipToBox(Ray const& ray, double& enter, double& exit) const {
  HeightGrid const& grid = *m_grid;
  btVector3 const lower(-0.5 * grid.sizeX, -0.5 * grid.sizeY, grid.lowest);
  btVector3 const upper(0.5 * grid.sizeX, 0.5 * grid.sizeY, grid.highest);
  for (int axis = 0; axis < 3; ++axis) {
    double const o = ray.origin[axis], d = ray.direction[axis];
    if (d == 0.0) {
      if (o < lower[axis] || o > upper[axis])
        return false;
      continue;
    }
    double const a = (lower[axis] - o) / d, b = (upper[axis] - o) / d;
    enter = std::max(enter, std::min(a, b));
    exit = std::min(exit, std::max(a, b));
  }
  // A flat field has a box without height, whose two sides rounding may swap.
  return enter <= exit + 1e-9 * (1.0 + std::abs(exit));
}

bool HeightFieldImpl::castOnCell(Ray const& ray, size_t x, size_t y, Hit& hit) const {
  HeightGrid const& grid = *m_grid;
  btVector3 const low = grid.point(x, y), high = grid.point(x + 1, y + 1);
  long const first = 2 * static_cast<long>(y * (grid.numX - 1) + x);
  bool found = false;
  if (hitTriangle(ray, low, grid.point(x + 1, y), high, hit)) {
    hit.triangle = first;
    found = true;
  }
  if (hitTriangle(ray, low, high, grid.point(x, y + 1), hit)) {
    hit.triangle = first + 1;
    found = true;
  }
  return found;
}

bool HeightFieldImpl::castRay(Ray const& ray, Hit& hit) const {
  HeightGrid const& grid = *m_grid;
  double enter = 0.0, exit = hit.distance;
  if (!clipToBox(ray, enter, exit))
    return false;
  btVector3 const start = ray.origin + ray.direction * enter;
  size_t const cellsX = grid.numX - 1, cellsY = grid.numY - 1;
  Walk x(start.x() + 0.5 * grid.sizeX, ray.direction.x(), grid.stepX(), cellsX, enter);
  Walk y(start.y() + 0.5 * grid.sizeY, ray.direction.y(), grid.stepY(), cellsY, enter);
  for (;;) {
    if (castOnCell(ray, static_cast<size_t>(x.cell), static_cast<size_t>(y.cell), hit))
      return true;
    Walk& sooner = x.next < y.next ? x : y;
    if (!(sooner.next <= exit + 1e-9 * (1.0 + std::abs(exit))) ||
        !sooner.advance(&sooner == &x ? cellsX : cellsY))
      return false;
  }
}

void HeightFieldImpl::closest(btVector3 const& center, double reach, bool, SurfacePoints& found) const {
  HeightGrid const& grid = *m_grid;
  if (center.z() > grid.highest + reach)
    return;
  double const cellX = (center.x() + 0.5 * grid.sizeX) / grid.stepX();
  double const cellY = (center.y() + 0.5 * grid.sizeY) / grid.stepY();
  auto const first = [](double cell) { return static_cast<size_t>(std::max(0.0, std::floor(cell))); };
  auto const end = [](double cell, size_t count) {
    return static_cast<size_t>(std::clamp(std::floor(cell) + 1.0, 0.0, static_cast<double>(count - 1)));
  };
  double const reachX = reach / grid.stepX(), reachY = reach / grid.stepY();
  double below = 0.0; // how deep under the surface of its own column
  for (size_t y = first(cellY - reachY); y < end(cellY + reachY, grid.numY); ++y)
    for (size_t x = first(cellX - reachX); x < end(cellX + reachX, grid.numX); ++x) {
      btVector3 const low = grid.point(x, y), high = grid.point(x + 1, y + 1);
      closestOnFace(center, reach, low, grid.point(x + 1, y), high, below, found);
      closestOnFace(center, reach, low, high, grid.point(x, y + 1), below, found);
    }
  found.dropHidden(1e-3 * reach);
}

void HeightFieldImpl::bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const {
  HeightGrid const& grid = *m_grid;
  upper = lower = frame(grid.point(0, 0));
  for (size_t y = 0; y < grid.numY; ++y)
    for (size_t x = 0; x < grid.numX; ++x) {
      btVector3 const point = frame(grid.point(x, y));
      lower.setMin(point);
      upper.setMax(point);
    }
}

} // namespace zorBullet
