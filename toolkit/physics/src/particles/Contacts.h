#pragma once

#include <cstdint>
#include <vector>

#include <LinearMath/btVector3.h>

#include "particles/Float3.h"

namespace zorParticles {

constexpr uint32_t NONE = 0xffffffffu;

/** A particle as the solver moves it, in the order of the grid. */
struct Ball {
  Float3 velocity;
  float inverseMass = 0;
  Float3 spin;
  float radius = 0;
  Float3 moved; // in this step
  float inverseInertia = 0;
};

/** What passes through a contact in a sub-step; kept as the first guess of the next one. */
struct Impulse {
  float normal = 0;
  Float3 friction; // on the second
  Float3 rolling;  // on the second
};

/** Two particles. Where they are follows from their motion, so that they may roll around each other in a
 * step. */
struct PairContact {
  uint32_t first, second; // place in the order of the grid
  Float3 between;         // from the first to the second, at the start of the step
  float mass;
  float approach; // speed along the normal at the start of the step; negative when coming together
  float total;    // normal impulse of all sub-steps
  uint32_t surface;
  Impulse impulse;
};

/** A particle and a geometry that forces don't move. The normal points from the particle to the geometry. */
struct WallContact {
  uint32_t first;
  uint32_t collider;
  Float3 normal;
  float gap;
  float mass;
  float approach;
  float total;
  uint32_t surface;
  Impulse impulse;
  Float3 velocity; // of the geometry at the contact
};

/** A particle and a body that forces move. */
struct BodyContact : WallContact {
  uint32_t body;
  float frictionMass;
  float rollingMass;
  btVector3 arm; // of the contact about the body's centre of mass
};

/** A particle inside a sensor. */
struct SensorContact {
  uint32_t first;
  uint32_t collider;
  Float3 normal;
  float gap;
};

/** How two surfaces meet. */
struct Surface {
  float friction = 0;
  float restitution = 0;
  float rolling = 0;
};

/** Contacts whose first particle lies in one slab of the grid. */
struct SlabContacts {
  std::vector<PairContact> inside; // second in the same slab
  std::vector<PairContact> across; // second in the next slab
  std::vector<WallContact> walls;
  std::vector<BodyContact> bodies;
  std::vector<SensorContact> sensors;
  uint32_t begin = 0, end = 0; // of the particles

  void clear() {
    inside.clear();
    across.clear();
    walls.clear();
    bodies.clear();
    sensors.clear();
  }
};

/** Where the contacts of a particle begin in the lists of its slab. */
struct ContactStarts {
  uint32_t inside, across, walls, bodies;
};

/** All contacts of a step, and what is needed to find those of a particle again in the next. */
struct ContactSet {
  std::vector<SlabContacts> slabs; // grows, never shrinks: keeps its memory
  uint32_t numSlabs = 0;
  std::vector<uint32_t> order;      // index of each particle, in the order of the grid
  std::vector<uint32_t> place;      // of each index in the order; NONE when it took no part
  std::vector<ContactStarts> start; // in the order of the grid
  std::vector<uint16_t> slab;       // in the order of the grid
};

} // namespace zorParticles
