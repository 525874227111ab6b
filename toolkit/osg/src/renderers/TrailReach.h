#pragma once

namespace zorOSG {

/**
 * How far what leaves a path can have moved itself since its last position; farther away it was put there,
 * and its path has a gap.
 */
struct TrailReach {
  double time = 0.0;    // since the last position (s)
  double gravity = 0.0; // m/s^2

  /** \param fastest - greater one of the speeds at either end (m/s) \param radius - of the thing (m) */
  double of(double fastest, double radius) const {
    return 2.0 * time * fastest + 0.5 * gravity * time * time + radius;
  }
};

} // namespace zorOSG
