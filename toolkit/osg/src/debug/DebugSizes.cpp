#include "DebugSizes.h"

#include <algorithm>

namespace zorOSG {

namespace {

constexpr double UNBOUNDED = 1e9;

} // namespace

double radiusOf(zorCollide::Geometry const& geometry) {
  zor::Vec3 lower, upper;
  geometry.getBounds(lower, upper);
  double const radius = 0.5 * (upper - lower).length();
  return radius < UNBOUNDED ? radius : 0; // NaN and infinite ones too
}

double radiusOf(zor::RigidBody const& body) {
  double largest = 0;
  for (auto const& geometry : body.getGeometries())
    largest = std::max(largest, radiusOf(*geometry));
  return largest;
}

} // namespace zorOSG
