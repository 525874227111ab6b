#include "ShadowMesh.h"

#include "scene/Mirrors.h"
#include "scene/VertexWelder.h"

#include <osg/TriangleIndexFunctor>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace zorOSG {

namespace {

struct IndexReader {
  std::vector<std::array<unsigned int, 3>>* triangles = nullptr;
  void operator()(unsigned int a, unsigned int b, unsigned int c) const { triangles->push_back({a, b, c}); }
};

osg::Vec3d awayFrom(VolumeLight const& light, osg::Vec3d const& point) {
  osg::Vec3d const place(light.position.x(), light.position.y(), light.position.z());
  osg::Vec3d way = light.position.w() == 0.0 ? -place : point - place / light.position.w();
  way.normalize();
  return way;
}

/** Collects triangles between points and their images far behind. */
class VolumeWriter {
public:
  VolumeWriter(std::vector<osg::Vec3d> const& points, VolumeLight const& light, VolumeSurface& surface)
      : m_surface(surface) {
    m_near.reserve(points.size());
    m_far.reserve(points.size());
    for (osg::Vec3d const& point : points) {
      m_near.emplace_back(point);
      m_far.emplace_back(point + awayFrom(light, point) * light.reach);
    }
  }

  /** The ends of the volume, of a triangle that faces the light. */
  void caps(unsigned int a, unsigned int b, unsigned int c) {
    add(m_surface.lids, m_near[a], m_near[b], m_near[c]);
    add(m_surface.sides, m_far[c], m_far[b], m_far[a]);
  }

  void side(unsigned int from, unsigned int to) {
    add(m_surface.sides, m_near[from], m_far[from], m_far[to]);
    add(m_surface.sides, m_near[from], m_far[to], m_near[to]);
  }

private:
  static void add(std::vector<osg::Vec3>& triangles, osg::Vec3 const& a, osg::Vec3 const& b,
                  osg::Vec3 const& c) {
    triangles.push_back(a);
    triangles.push_back(b);
    triangles.push_back(c);
  }

  std::vector<osg::Vec3> m_near, m_far;
  VolumeSurface& m_surface;
};

/** Where an edge meets a plane: the same point for both triangles that have the edge. */
osg::Vec3 crossing(osg::Vec3 a, osg::Vec3 b, osg::Plane const& plane) {
  if (b < a)
    std::swap(a, b);
  double const first = plane.distance(a), last = plane.distance(b);
  return a + (b - a) * static_cast<float>(first / (first - last));
}

/** Leaves of a convex polygon what is on the positive side of a plane. */
void cutPolygon(std::vector<osg::Vec3>& polygon, std::vector<osg::Vec3>& spare, osg::Plane const& plane) {
  spare.clear();
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    osg::Vec3 const &from = polygon[i], &to = polygon[(i + 1) % polygon.size()];
    bool const fromStays = plane.distance(from) >= 0.0, toStays = plane.distance(to) >= 0.0;
    if (fromStays)
      spare.push_back(from);
    if (fromStays != toStays)
      spare.push_back(crossing(from, to, plane));
  }
  polygon.swap(spare);
}

} // namespace

ShadowMesh::ShadowMesh(osg::Geometry const& mesh) {
  auto const* const corners = dynamic_cast<osg::Vec3Array const*>(mesh.getVertexArray());
  if (!corners)
    return;
  std::vector<Triangle> found;
  osg::TriangleIndexFunctor<IndexReader> reader;
  reader.triangles = &found;
  mesh.accept(reader);
  VertexWelder<osg::Vec3> welder(corners->size());
  for (Triangle const& triangle : found)
    if (std::max({triangle[0], triangle[1], triangle[2]}) < corners->size())
      addTriangle({welder.number((*corners)[triangle[0]]), welder.number((*corners)[triangle[1]]),
                   welder.number((*corners)[triangle[2]])});
  m_positions = welder.positions();
  matchSides();
}

ShadowMesh ShadowMesh::cut(std::vector<osg::Plane> const& planes) const {
  ShadowMesh result;
  VertexWelder<osg::Vec3> welder(m_positions.size());
  std::vector<osg::Vec3> polygon, spare;
  for (auto const& [a, b, c] : m_triangles) {
    polygon = {m_positions[a], m_positions[b], m_positions[c]};
    for (osg::Plane const& plane : planes)
      cutPolygon(polygon, spare, plane);
    for (std::size_t i = 2; i < polygon.size(); ++i)
      result.addTriangle(
          {welder.number(polygon[0]), welder.number(polygon[i - 1]), welder.number(polygon[i])});
  }
  result.m_positions = welder.positions();
  result.matchSides();
  return result;
}

/** Puts the sides of each edge beside each other, and finds whether the surface is closed. */
void ShadowMesh::matchSides() {
  std::sort(m_sides.begin(), m_sides.end(), [](Side const& a, Side const& b) {
    return std::tie(a.low, a.high, a.triangle) < std::tie(b.low, b.high, b.triangle);
  });
  for (std::size_t i = 0; i < m_sides.size();) {
    int sum = 0;
    std::size_t const first = i;
    for (;
         i < m_sides.size() && m_sides[i].low == m_sides[first].low && m_sides[i].high == m_sides[first].high;
         ++i)
      sum += m_sides[i].direction;
    m_isClosed = m_isClosed && sum == 0;
  }
}

void ShadowMesh::addTriangle(Triangle const& corners) {
  auto const [a, b, c] = corners;
  if (a == b || b == c || c == a)
    return;
  auto const number = static_cast<unsigned int>(m_triangles.size());
  m_triangles.push_back(corners);
  for (int i = 0; i < 3; ++i) {
    unsigned int const from = corners[static_cast<size_t>(i)], to = corners[static_cast<size_t>((i + 1) % 3)];
    m_sides.push_back({std::min(from, to), std::max(from, to), number, from < to ? 1 : -1});
  }
}

/** \return 1 for triangles that face the light; for others 0 in a closed body and -1, turned round, in a
 * sheet */
std::vector<int> ShadowMesh::weighTriangles(std::vector<osg::Vec3d> const& points, VolumeLight const& light,
                                            bool isMirrored) const {
  std::vector<int> weights;
  weights.reserve(m_triangles.size());
  for (auto const& [a, b, c] : m_triangles) {
    osg::Vec3d const normal = (points[b] - points[a]) ^ (points[c] - points[a]);
    bool const faces = (normal * awayFrom(light, points[a]) < 0.0) != isMirrored;
    int const weight = faces ? 1 : (m_isClosed ? 0 : -1);
    weights.push_back(isMirrored ? -weight : weight);
  }
  return weights;
}

VolumeSurface ShadowMesh::makeVolume(osg::Matrixd const& place, VolumeLight const& light) const {
  VolumeSurface surface;
  std::vector<osg::Vec3d> points;
  points.reserve(m_positions.size());
  for (osg::Vec3 const& position : m_positions)
    points.push_back(osg::Vec3d(position) * place);
  std::vector<int> const weights = weighTriangles(points, light, mirrors(place));
  VolumeWriter writer(points, light, surface);
  for (std::size_t i = 0; i < m_triangles.size(); ++i) {
    auto const& [a, b, c] = m_triangles[i];
    if (weights[i] > 0)
      writer.caps(a, b, c);
    else if (weights[i] < 0)
      writer.caps(c, b, a);
  }
  for (std::size_t i = 0; i < m_sides.size();) {
    Side const& first = m_sides[i];
    int sum = 0;
    for (; i < m_sides.size() && m_sides[i].low == first.low && m_sides[i].high == first.high; ++i)
      sum += m_sides[i].direction * weights[m_sides[i].triangle];
    for (int count = std::abs(sum); count > 0; --count)
      writer.side(sum > 0 ? first.low : first.high, sum > 0 ? first.high : first.low);
  }
  return surface;
}

} // namespace zorOSG
