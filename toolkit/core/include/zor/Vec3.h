#pragma once

#include <zor/Types.h>
#include <zor/Vec2.h>
#include <zor/Vector.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <stdexcept>
#include <type_traits>

namespace zor {

/** Vector of 3 components. */
template <class T>
class Vec3T {
public:
  typedef T value_type;

  /** The null vector. */
  constexpr Vec3T() = default;
  /** A vector of three components. */
  constexpr Vec3T(T x, T y, T z) : m_values{x, y, z} {}
  /** A vector of two components and a third one. */
  constexpr Vec3T(Vec2T<T> const& xy, T z) : m_values{xy.x(), xy.y(), z} {}

  /** Converts from another component type. */
  template <class Other>
  explicit constexpr Vec3T(Vec3T<Other> const& other)
      : m_values{static_cast<T>(other.x()), static_cast<T>(other.y()), static_cast<T>(other.z())} {}

  constexpr T& x() { return m_values[0]; }
  /** \return the first component */
  constexpr T x() const { return m_values[0]; }
  constexpr T& y() { return m_values[1]; }
  /** \return the second component */
  constexpr T y() const { return m_values[1]; }
  constexpr T& z() { return m_values[2]; }
  /** \return the third component */
  constexpr T z() const { return m_values[2]; }

  /** Component without a check of the index. */
  constexpr T& operator[](std::size_t index) { return m_values[index]; }
  constexpr T operator[](std::size_t index) const { return m_values[index]; }

  /** \return a component \throws std::out_of_range if index is not 0 to 2 */
  T get(std::size_t index) const { return m_values[checked(index)]; }

  /** Sets a component. \throws std::out_of_range if index is not 0 to 2 */
  void set(std::size_t index, T value) { m_values[checked(index)] = value; }

  /** Sets all components. */
  constexpr void set(T x, T y, T z) { *this = Vec3T(x, y, z); }

  /** \return the 3 components in order */
  constexpr T* ptr() { return m_values; }
  constexpr T const* ptr() const { return m_values; }

  /** \return the square of the length */
  constexpr T length2() const { return dot(*this); }

  /** \return the length */
  Real length() const { return std::sqrt(static_cast<Real>(length2())); }

  /** Scales to length 1; a null vector stays. \return the length before */
  Real normalize() {
    Real const before = length();
    if (before > 0.0) {
      *this = *this * static_cast<T>(1.0 / before);
    }
    return before;
  }

  /** \return this vector with length 1; the null vector for a null vector */
  Vec3T normal() const {
    Vec3T result(*this);
    result.normalize();
    return result;
  }

  /** \return the scalar product */
  constexpr T dot(Vec3T const& other) const {
    return m_values[0] * other.m_values[0] + m_values[1] * other.m_values[1] +
           m_values[2] * other.m_values[2];
  }

  /** \return the vector product */
  constexpr Vec3T cross(Vec3T const& other) const {
    return Vec3T(y() * other.z() - z() * other.y(), z() * other.x() - x() * other.z(),
                 x() * other.y() - y() * other.x());
  }

  /** \return the distance between two points */
  Real distance(Vec3T const& other) const { return (*this - other).length(); }

  /** \return a vector of length 1 at a right angle to this one, which must have a length */
  Vec3T perpendicular() const {
    T const ax = std::abs(x()), ay = std::abs(y()), az = std::abs(z());
    Vec3T const axis = ax <= ay && ax <= az ? Vec3T(1, 0, 0) : (ay <= az ? Vec3T(0, 1, 0) : Vec3T(0, 0, 1));
    return cross(axis).normal();
  }

  /** \return the product component by component */
  static constexpr Vec3T mul(Vec3T const& a, Vec3T const& b) {
    return Vec3T(a.x() * b.x(), a.y() * b.y(), a.z() * b.z());
  }

  /** \return the smaller of each component */
  static constexpr Vec3T min(Vec3T const& a, Vec3T const& b) {
    return Vec3T(std::min(a.x(), b.x()), std::min(a.y(), b.y()), std::min(a.z(), b.z()));
  }

  /** \return the larger of each component */
  static constexpr Vec3T max(Vec3T const& a, Vec3T const& b) {
    return Vec3T(std::max(a.x(), b.x()), std::max(a.y(), b.y()), std::max(a.z(), b.z()));
  }

  /** \return true if no component is infinite or not a number */
  bool isFinite() const {
    return std::isfinite(static_cast<Real>(x())) && std::isfinite(static_cast<Real>(y())) &&
           std::isfinite(static_cast<Real>(z()));
  }

#ifndef SWIG // the binding has one for all values
  /** \return true if every component differs by no more than epsilon */
  bool equals(Vec3T const& other, Real epsilon = 1e-6) const {
    for (std::size_t i = 0; i < 3; ++i) {
      if (!(std::abs(static_cast<Real>(m_values[i]) - static_cast<Real>(other.m_values[i])) <= epsilon)) {
        return false;
      }
    }
    return true;
  }
#endif

  constexpr Vec3T operator-() const { return Vec3T(-x(), -y(), -z()); }
  constexpr Vec3T operator+(Vec3T const& other) const {
    return Vec3T(x() + other.x(), y() + other.y(), z() + other.z());
  }
  constexpr Vec3T operator-(Vec3T const& other) const {
    return Vec3T(x() - other.x(), y() - other.y(), z() - other.z());
  }
  constexpr Vec3T operator*(T factor) const { return Vec3T(x() * factor, y() * factor, z() * factor); }
  constexpr Vec3T operator/(T divisor) const { return Vec3T(x() / divisor, y() / divisor, z() / divisor); }

  /** \return the scalar product */
  constexpr T operator*(Vec3T const& other) const { return dot(other); }

  /** \return the vector product */
  constexpr Vec3T operator^(Vec3T const& other) const { return cross(other); }

  constexpr Vec3T& operator+=(Vec3T const& other) { return *this = *this + other; }
  constexpr Vec3T& operator-=(Vec3T const& other) { return *this = *this - other; }
  constexpr Vec3T& operator*=(T factor) { return *this = *this * factor; }
  constexpr Vec3T& operator/=(T divisor) { return *this = *this / divisor; }

  constexpr bool operator==(Vec3T const& other) const {
    return x() == other.x() && y() == other.y() && z() == other.z();
  }

private:
  static std::size_t checked(std::size_t index) {
    if (index >= 3) {
      throw std::out_of_range("Vec3: index " + std::to_string(index) + " is not 0 to 2");
    }
    return index;
  }

  T m_values[3] = {};
};

template <class T>
constexpr Vec3T<T> operator*(std::type_identity_t<T> factor, Vec3T<T> const& vector) {
  return vector * factor;
}

template <class T>
std::ostream& operator<<(std::ostream& stream, Vec3T<T> const& vector) {
  return stream << vector.x() << " " << vector.y() << " " << vector.z();
}

typedef Vec3T<Real> Vec3;
typedef Vec3T<float> Vec3f;
typedef Vec3T<int> Vec3i;
typedef Vec3T<UInt32> Vec3u;

typedef Vector<Vec3> Vec3Vector;
typedef Vector<Vec3f> Vec3fVector;
typedef Vector<Vec3i> Vec3iVector;
typedef Vector<Vec3u> Vec3uVector;

} // namespace zor
