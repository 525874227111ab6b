#pragma once

#include <atomic>
#include <cstdint>

namespace zorBullet {

/** How two geometries meet: what a contact point of theirs gets. */
struct Surface {
  double friction = 0;
  double restitution = 0;
  double rollingFriction = 0;
  double spinningFriction = 0;
  double stiffness = 0; // N/m; infinite for rigid
  double damping = 0;   // N s/m
};

/** Counts changes of materials everywhere, so that a space looks surfaces up again only after one. */
inline std::atomic<std::uint64_t> surfaceChanges{1};

inline void surfacesChanged() {
  surfaceChanges.fetch_add(1, std::memory_order_relaxed);
}

} // namespace zorBullet
