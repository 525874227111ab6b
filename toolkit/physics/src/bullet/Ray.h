#pragma once

#include <limits>

#include <LinearMath/btVector3.h>

namespace zorCollide {
class Geometry;
class RayHit;
class Shape;
} // namespace zorCollide

namespace zorBullet {

/** A ray with unit direction. */
struct Ray {
  btVector3 origin;
  btVector3 direction;
};

/** The nearest hit so far. Only hits nearer than distance replace it, so that it starts as the ray's length.
 */
struct Hit {
  double distance = std::numeric_limits<double>::infinity();
  btVector3 normal{0, 0, 1};
  long triangle = -1;
  zorCollide::Shape const* shape = nullptr; // set where a compound holds the shape that was met
};

/** The hit as the toolkit's value. */
zorCollide::RayHit makeRayHit(zorCollide::Geometry& geometry, Ray const& ray, Hit const& hit);

} // namespace zorBullet
