#include <zorCollide/RayTable.h>

namespace zorCollide {

void RayTable::reserve(size_t count) {
  m_distances.reserve(count);
  m_points.reserve(count);
  m_normals.reserve(count);
  m_geometries.reserve(count);
}

void RayTable::addHit(zor::Real distance, zor::Vec3 const& point, zor::Vec3 const& normal,
                      zor::Int geometry) {
  m_distances.push_back(distance);
  m_points.push_back(point);
  m_normals.push_back(normal);
  m_geometries.push_back(geometry);
  ++m_numHits;
}

void RayTable::addMiss(zor::Vec3 const& end) {
  m_distances.push_back(-1);
  m_points.push_back(end);
  m_normals.push_back(zor::Vec3());
  m_geometries.push_back(-1);
}

} // namespace zorCollide
