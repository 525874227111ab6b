#pragma once

#include <cstdint>
#include <vector>

#include <LinearMath/btVector3.h>

#include <zor/RigidBody.h>
#include <zorCollide/Geometry.h>

#include "particles/Contacts.h"

namespace zorParticles {

/**
 * What an engine carries from one step to the next: the contacts with their impulses and the order of
 * everything. One restored from it goes on bit for bit and shows the same contacts.
 *
 * Contacts stand slab by slab, ascending by their first particle. Only what is needed after a step counts;
 * mass, approach, surface and body of a contact do not.
 */
struct EngineMemory {
  /** A shape that particles could meet. */
  struct Part {
    zorCollide::Geometry* geometry = nullptr; // null for one that is gone
    uint32_t part = 0;
  };
  /** A body as it would be if nothing but the particles and forces had acted on it since. */
  struct Expected {
    zor::RigidBody* body = nullptr;
    btVector3 velocity{0, 0, 0}, spin{0, 0, 0};
    btVector3 load{0, 0, 0}, twist{0, 0, 0};
  };

  double step = 0; // length of the last round (s); 0 before the first
  float subStep = 0;
  std::vector<uint32_t> order; // index of each particle, in the order of the grid; NONE for those removed
  std::vector<Float3> moved;   // in the order of the grid, as the radii
  std::vector<float> radii;
  std::vector<uint32_t> slabEnds;
  std::vector<PairContact> inside, across;
  std::vector<WallContact> walls, bodies;
  std::vector<SensorContact> sensors;
  std::vector<Part> colliders;
  std::vector<Expected> expected; // in no order
};

} // namespace zorParticles
