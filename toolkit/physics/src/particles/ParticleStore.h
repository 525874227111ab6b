#pragma once

#include <cmath>
#include <cstdint>
#include <tuple>

#include <zor/Quat.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>

#include "particles/SharedArray.h"

namespace zorParticles {

/** One row of the store. */
struct ParticleRow {
  zor::Vec3 position;
  zor::Vec3 velocity;
  zor::Vec3 angularVelocity;
  zor::Vec3 force;
  zor::Quat rotation;
  zor::Vec4f color;
  double radius = 0;
  double mass = 0;
  double lifetime = 0; // left (s)
  uint32_t material = 0;
  uint8_t enabled = 1;
  uint64_t id = 0;
};

constexpr size_t MOST_PARTICLES = 4'000'000;

/** The particles, one array a quantity. */
class ParticleStore {
  auto arrays() {
    return std::tie(position, velocity, angularVelocity, force, rotation, color, radius, mass, lifetime,
                    material, enabled, id);
  }

public:
  SharedArray<zor::Vec3> position, velocity, angularVelocity, force;
  SharedArray<zor::Quat> rotation;
  SharedArray<zor::Vec4f> color;
  SharedArray<double> radius, mass, lifetime;
  SharedArray<uint32_t> material; // place in the system's list of materials
  SharedArray<uint8_t> enabled;
  SharedArray<uint64_t> id; // never used twice in a system

  size_t size() const { return position.size(); }

  /** Takes the memory for all, so that adding them can't fail half way. */
  void reserve(size_t count) {
    std::apply([count](auto&... array) { (array.reserve(count), ...); }, arrays());
  }

  void push(ParticleRow const& row) {
    position.push(row.position);
    velocity.push(row.velocity);
    angularVelocity.push(row.angularVelocity);
    force.push(row.force);
    rotation.push(row.rotation);
    color.push(row.color);
    radius.push(row.radius);
    mass.push(row.mass);
    lifetime.push(row.lifetime);
    material.push(row.material);
    enabled.push(row.enabled);
    id.push(row.id);
  }

  void move(size_t from, size_t to) {
    std::apply([from, to](auto&... array) { ((array[to] = array[from]), ...); }, arrays());
  }

  /** For a store that is empty; fill all rows. */
  void resize(size_t size) {
    std::apply([size](auto&... array) { (array.resize(size), ...); }, arrays());
  }

  /** \return false if a script has spoilt a row: a number of its motion isn't finite or out of bounds */
  bool isSane(size_t i) const {
    constexpr double FARTHEST = 1e9;
    return position[i].isFinite() && velocity[i].isFinite() && angularVelocity[i].isFinite() &&
           force[i].isFinite() && rotation[i].isFinite() && position[i].length() < FARTHEST &&
           radius[i] < FARTHEST && std::isfinite(mass[i]);
  }

  void shrink(size_t size) {
    std::apply([size](auto&... array) { (array.shrink(size), ...); }, arrays());
  }
};

} // namespace zorParticles
