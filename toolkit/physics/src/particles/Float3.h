#pragma once

#include <cmath>

namespace zorParticles {

/** Three numbers in single precision: what the solver computes changes of velocity with. */
struct Float3 {
  float x = 0, y = 0, z = 0;

  Float3 operator+(Float3 const& o) const { return {x + o.x, y + o.y, z + o.z}; }
  Float3 operator-(Float3 const& o) const { return {x - o.x, y - o.y, z - o.z}; }
  Float3 operator-() const { return {-x, -y, -z}; }
  Float3 operator*(float s) const { return {x * s, y * s, z * s}; }
  Float3& operator+=(Float3 const& o) { return *this = *this + o; }
  Float3& operator-=(Float3 const& o) { return *this = *this - o; }
  float dot(Float3 const& o) const { return x * o.x + y * o.y + z * o.z; }
  Float3 cross(Float3 const& o) const { return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x}; }
  float length2() const { return dot(*this); }
  float length() const { return std::sqrt(length2()); }

  /** The same direction, at most so long. */
  Float3 limited(float most) const {
    float const size2 = length2();
    return size2 > most * most ? *this * (most / std::sqrt(size2)) : *this;
  }
};

} // namespace zorParticles
