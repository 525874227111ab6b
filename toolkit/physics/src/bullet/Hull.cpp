#include "bullet/Hull.h"

#include <algorithm>
#include <cmath>

#include <LinearMath/btConvexHullComputer.h>

#include "bullet/Conversions.h"

namespace zorBullet {
namespace {

btVector3 average(btVector3 const* points, size_t count) {
  btVector3 sum(0, 0, 0);
  for (size_t i = 0; i < count; ++i)
    sum += points[i];
  return count ? sum / static_cast<double>(count) : sum;
}

void addTriangle(Hull& hull, zor::UInt32 a, zor::UInt32 b, zor::UInt32 c, btVector3 const& inside) {
  btVector3 normal = (hull.corners[b] - hull.corners[a]).cross(hull.corners[c] - hull.corners[a]);
  double const length = normal.length();
  if (length == 0.0)
    return;
  normal /= length;
  if (normal.dot(hull.corners[a] - inside) < 0.0) {
    normal = -normal;
    std::swap(b, c);
  }
  hull.indices.insert(hull.indices.end(), {a, b, c});
  hull.normals.push_back(normal);
  hull.constants.push_back(normal.dot(hull.corners[a]));
}

void addFace(Hull& hull, btConvexHullComputer::Edge const* first, btVector3 const& inside) {
  auto const corner = [](btConvexHullComputer::Edge const* edge) {
    return static_cast<zor::UInt32>(edge->getSourceVertex());
  };
  auto const* second = first->getNextEdgeOfFace();
  for (auto const* third = second->getNextEdgeOfFace(); third != first;
       second = third, third = third->getNextEdgeOfFace())
    addTriangle(hull, corner(first), corner(second), corner(third), inside);
}

} // namespace

Hull Hull::of(btVector3 const* points, size_t count) {
  Hull hull;
  if (count == 0)
    return hull;
  btConvexHullComputer computer;
  computer.compute(static_cast<double const*>(*points), static_cast<int>(sizeof(btVector3)),
                   static_cast<int>(count), 0.0, 0.0);
  for (int i = 0; i < computer.vertices.size(); ++i)
    hull.corners.push_back(computer.vertices[i]);
  btVector3 const inside = average(hull.corners.data(), hull.corners.size());
  for (int i = 0; i < computer.faces.size(); ++i)
    addFace(hull, &computer.edges[computer.faces[i]], inside);
  hull.volume =
      solidMassData(hull.corners.data(), hull.corners.size(), hull.indices.data(), hull.indices.size()).mass;
  double extent = 0.0;
  for (btVector3 const& corner : hull.corners)
    extent = std::max(extent, corner.distance(inside));
  if (!(hull.volume > 1e-9 * extent * extent * extent)) { // flat
    hull.volume = 0.0;
    hull.indices.clear();
    hull.normals.clear();
    hull.constants.clear();
  }
  return hull;
}

std::vector<btVector3> Hull::reducedCorners(size_t count) const {
  if (corners.size() <= count)
    return corners;
  std::vector<bool> chosen(corners.size(), false);
  double const golden = SIMD_PI * (3.0 - std::sqrt(5.0));
  for (size_t i = 0; i < count; ++i) {
    double const z = 1.0 - (2.0 * static_cast<double>(i) + 1.0) / static_cast<double>(count);
    double const r = std::sqrt(1.0 - z * z), angle = golden * static_cast<double>(i);
    btVector3 const direction(r * std::cos(angle), r * std::sin(angle), z);
    double distance = 0.0;
    chosen[static_cast<size_t>(
        direction.maxDot(corners.data(), static_cast<long>(corners.size()), distance))] = true;
  }
  std::vector<btVector3> result;
  for (size_t i = 0; i < corners.size(); ++i)
    if (chosen[i])
      result.push_back(corners[i]);
  return result;
}

MassData solidMassData(btVector3 const* vertices, size_t numVertices, zor::UInt32 const* indices,
                       size_t numIndices) {
  // Sum over the tetrahedra between each triangle and one point; a point in the middle keeps digits.
  btVector3 const origin = average(vertices, numVertices);
  MassData data;
  btVector3 moment(0, 0, 0);
  double second[3][3] = {};
  for (size_t i = 0; i + 2 < numIndices; i += 3) {
    btVector3 const p[3] = {vertices[indices[i]] - origin, vertices[indices[i + 1]] - origin,
                            vertices[indices[i + 2]] - origin};
    double const volume = p[0].dot(p[1].cross(p[2])) / 6.0;
    btVector3 const sum = p[0] + p[1] + p[2];
    data.mass += volume;
    moment += sum * (volume / 4.0);
    for (int row = 0; row < 3; ++row)
      for (int column = 0; column < 3; ++column)
        second[row][column] += volume / 20.0 *
                               (p[0][row] * p[0][column] + p[1][row] * p[1][column] +
                                p[2][row] * p[2][column] + sum[row] * sum[column]);
  }
  if (!(data.mass > 0.0))
    return MassData();
  btVector3 const center = moment / data.mass;
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      second[row][column] -= data.mass * center[row] * center[column];
  double const trace = second[0][0] + second[1][1] + second[2][2];
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      data.inertia[row][column] = (row == column ? trace : 0.0) - second[row][column];
  data.center = center + origin;
  return data;
}

std::vector<btVector3> toBt(zor::Vec3Vector const& points) {
  std::vector<btVector3> result;
  result.reserve(points.size());
  for (zor::Vec3 const& point : points)
    result.push_back(toBt(point));
  return result;
}

} // namespace zorBullet
