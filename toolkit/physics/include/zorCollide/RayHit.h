#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>

namespace zorCollide {

/** Where a ray meets a geometry. Holds the geometry. */
class RayHit {
public:
  /** Creates a miss. */
  RayHit() = default;

#ifndef SWIG
  RayHit(Geometry* geometry, Shape* shape, zor::Int triangle, zor::Vec3 const& point, zor::Vec3 const& normal,
         zor::Real distance)
      : m_geometry(geometry), m_shape(shape), m_triangle(triangle), m_point(point), m_normal(normal),
        m_distance(distance) {}
#endif

  /** \return true if something was met */
  bool hasHit() const { return m_geometry.get() != nullptr; }
  /** \return the geometry, or null for a miss */
  zorCollide::Geometry* getGeometry() const { return m_geometry.get(); }
  /** \return the shape of the geometry that was met, inside compounds the innermost; null for a miss */
  zorCollide::Shape* getShape() const { return m_shape.get(); }
  /** \return index of the triangle in a convex, triangle mesh or height field; -1 otherwise */
  zor::Int getTriangleIndex() const { return m_triangle; }
  /** \return where (m, world) */
  zor::Vec3 getPoint() const { return m_point; }
  /** \return unit normal of the surface (world), on the side from which the ray comes */
  zor::Vec3 getNormal() const { return m_normal; }
  /** \return distance from the ray's origin (m); -1 for a miss */
  zor::Real getDistance() const { return m_distance; }

private:
  zor::ref_ptr<Geometry> m_geometry;
  zor::ref_ptr<Shape> m_shape;
  zor::Int m_triangle = -1;
  zor::Vec3 m_point;
  zor::Vec3 m_normal{0.0, 0.0, 1.0};
  zor::Real m_distance = -1.0;
};

/** Ray hits in a row. */
typedef zor::Vector<zorCollide::RayHit> RayHitVector;

} // namespace zorCollide
