#pragma once

#include <cstddef>

#include <zorCollide/Geometry.h>

namespace zorCollide {

/**
 * Lets the memory of geometries arrive before a loop over many of them comes to it. What tells where a
 * geometry is lies in several places, each found through the one before, and with thousands of bodies none of
 * them is in the processor's cache. For C++ only.
 *
 *     zorCollide::GeometryPrefetch const prefetch(geometries);
 *     for (size_t i = 0; i < geometries.size(); ++i) {
 *       prefetch.before(i);
 *       draw(*geometries[i]);
 *     }
 */
class GeometryPrefetch {
public:
  /** \param geometries - what is gone through; to be kept, and not to be changed, as long as this is used */
  explicit GeometryPrefetch(zorCollide::GeometryRefVector const& geometries) : m_geometries(geometries) {}

  /** \param index - of the geometry that is about to be looked at */
  void before(std::size_t index) const;

private:
  zorCollide::GeometryRefVector const& m_geometries;
};

} // namespace zorCollide
