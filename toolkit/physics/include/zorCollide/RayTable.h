#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

namespace zorCollide {

/** Where many rays meet geometries, as columns of numbers with one row a ray. */
class RayTable {
public:
  /** Creates a table without rows. */
  RayTable() = default;

  /** \return number of rays */
  size_t getNumRays() const { return m_distances.size(); }
  /** \return number of rays that met something */
  size_t getNumHits() const { return m_numHits; }

  /** \return distances from the origins (m); -1 for a miss */
  zor::RealVector const& getDistances() const { return m_distances; }
  /** \return points (m, world); the end of the ray for a miss, or its origin if that is not finite */
  zor::Vec3Vector const& getPoints() const { return m_points; }
  /** \return unit normals of the surfaces (world), on the side from which the rays come; zero for a miss */
  zor::Vec3Vector const& getNormals() const { return m_normals; }
  /** \return indices of the geometries in zorCollide::Space::getGeometries as it was; -1 for a miss */
  zor::IntVector const& getGeometryIndices() const { return m_geometries; }

#ifndef SWIG
  void reserve(size_t count);
  void addHit(zor::Real distance, zor::Vec3 const& point, zor::Vec3 const& normal, zor::Int geometry);
  void addMiss(zor::Vec3 const& end);
#endif

private:
  zor::RealVector m_distances;
  zor::Vec3Vector m_points;
  zor::Vec3Vector m_normals;
  zor::IntVector m_geometries;
  size_t m_numHits = 0;
};

} // namespace zorCollide
