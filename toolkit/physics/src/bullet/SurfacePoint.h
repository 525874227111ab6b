#pragma once

#include <array>
#include <cstddef>

#include <LinearMath/btTransform.h>
#include <LinearMath/btVector3.h>

namespace zorBullet {

/** A point of a surface that a small sphere may touch. */
struct SurfacePoint {
  btVector3 point;
  btVector3 normal;      // unit length, towards the sphere, away from the matter
  double distance = 0.0; // of the sphere's centre along the normal; negative where it is inside
};

/** The points where one sphere may touch one shape: one for a convex form, one a face for a surface. */
class SurfacePoints {
public:
  static constexpr size_t capacity = 12;

  size_t size() const { return m_size; }
  SurfacePoint const& operator[](size_t index) const { return m_points[index]; }
  SurfacePoint const* begin() const { return m_points.data(); }
  SurfacePoint const* end() const { return m_points.data() + m_size; }
  void clear() { m_size = 0; }

  /** Keeps the nearest ones where there are too many. */
  void add(SurfacePoint const& point);

  /** Of a surface made of faces: leaves out what lies at or behind the plane of a nearer point, such as the
   * edges of flat neighbours. */
  void dropHidden(double tolerance);

  /** Takes points from index `from` on over from a frame into its parent. */
  void transform(btTransform const& frame, size_t from);

private:
  std::array<SurfacePoint, capacity> m_points;
  size_t m_size = 0;
};

/** The nearest point of a triangle. */
btVector3 closestOnTriangle(btVector3 const& p, btVector3 const& a, btVector3 const& b, btVector3 const& c);

} // namespace zorBullet
