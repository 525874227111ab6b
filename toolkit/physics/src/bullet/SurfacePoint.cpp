#include "bullet/SurfacePoint.h"

#include <algorithm>

namespace zorBullet {

void SurfacePoints::add(SurfacePoint const& point) {
  if (m_size < capacity) {
    m_points[m_size++] = point;
    return;
  }
  auto const farthest = std::max_element(
      m_points.begin(), m_points.end(), [](auto const& a, auto const& b) { return a.distance < b.distance; });
  if (point.distance < farthest->distance)
    *farthest = point;
}

void SurfacePoints::dropHidden(double tolerance) {
  std::stable_sort(m_points.begin(), m_points.begin() + static_cast<ptrdiff_t>(m_size),
                   [](auto const& a, auto const& b) { return a.distance < b.distance; });
  size_t kept = 0;
  for (size_t i = 0; i < m_size; ++i) {
    bool hidden = false;
    for (size_t k = 0; k < kept && !hidden; ++k)
      hidden = (m_points[i].point - m_points[k].point).dot(m_points[k].normal) <= tolerance;
    if (!hidden)
      m_points[kept++] = m_points[i];
  }
  m_size = kept;
}

void SurfacePoints::transform(btTransform const& frame, size_t from) {
  for (size_t i = from; i < m_size; ++i) {
    m_points[i].point = frame(m_points[i].point);
    m_points[i].normal = frame.getBasis() * m_points[i].normal;
  }
}

btVector3 closestOnTriangle(btVector3 const& p, btVector3 const& a, btVector3 const& b, btVector3 const& c) {
  // By the regions of the corners, edges and the face in which p's projection may lie.
  btVector3 const ab = b - a, ac = c - a, ap = p - a;
  double const d1 = ab.dot(ap), d2 = ac.dot(ap);
  if (d1 <= 0.0 && d2 <= 0.0)
    return a;
  btVector3 const bp = p - b;
  double const d3 = ab.dot(bp), d4 = ac.dot(bp);
  if (d3 >= 0.0 && d4 <= d3)
    return b;
  double const vc = d1 * d4 - d3 * d2;
  if (vc <= 0.0 && d1 >= 0.0 && d3 <= 0.0)
    return a + ab * (d1 / (d1 - d3));
  btVector3 const cp = p - c;
  double const d5 = ab.dot(cp), d6 = ac.dot(cp);
  if (d6 >= 0.0 && d5 <= d6)
    return c;
  double const vb = d5 * d2 - d1 * d6;
  if (vb <= 0.0 && d2 >= 0.0 && d6 <= 0.0)
    return a + ac * (d2 / (d2 - d6));
  double const va = d3 * d6 - d5 * d4;
  if (va <= 0.0 && d4 - d3 >= 0.0 && d5 - d6 >= 0.0)
    return b + (c - b) * ((d4 - d3) / ((d4 - d3) + (d5 - d6)));
  double const scale = 1.0 / (va + vb + vc);
  return a + ab * (vb * scale) + ac * (vc * scale);
}

} // namespace zorBullet
