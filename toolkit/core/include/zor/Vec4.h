#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <stdexcept>
#include <type_traits>

namespace zor {

/** Vector of 4 components. */
template <class T>
class Vec4T {
public:
  typedef T value_type;

  /** The null vector. */
  constexpr Vec4T() = default;
  /** A vector of four components. */
  constexpr Vec4T(T x, T y, T z, T w) : m_values{x, y, z, w} {}
  constexpr Vec4T(Vec3T<T> const& xyz, T w) : m_values{xyz.x(), xyz.y(), xyz.z(), w} {}

  /** Converts from another component type. */
  template <class Other>
  explicit constexpr Vec4T(Vec4T<Other> const& other)
      : m_values{static_cast<T>(other.x()), static_cast<T>(other.y()), static_cast<T>(other.z()),
                 static_cast<T>(other.w())} {}

  constexpr T& x() { return m_values[0]; }
  /** \return the first component */
  constexpr T x() const { return m_values[0]; }
  constexpr T& y() { return m_values[1]; }
  /** \return the second component */
  constexpr T y() const { return m_values[1]; }
  constexpr T& z() { return m_values[2]; }
  /** \return the third component */
  constexpr T z() const { return m_values[2]; }
  constexpr T& w() { return m_values[3]; }
  /** \return the fourth component */
  constexpr T w() const { return m_values[3]; }

  /** Component without a check of the index. */
  constexpr T& operator[](std::size_t index) { return m_values[index]; }
  constexpr T operator[](std::size_t index) const { return m_values[index]; }

  /** \return a component \throws std::out_of_range if index is not 0 to 3 */
  T get(std::size_t index) const { return m_values[checked(index)]; }

  /** Sets a component. \throws std::out_of_range if index is not 0 to 3 */
  void set(std::size_t index, T value) { m_values[checked(index)] = value; }

  /** Sets all components. */
  constexpr void set(T x, T y, T z, T w) { *this = Vec4T(x, y, z, w); }

  /** \return the 4 components in order */
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
  Vec4T normal() const {
    Vec4T result(*this);
    result.normalize();
    return result;
  }

  /** \return the scalar product */
  constexpr T dot(Vec4T const& other) const {
    return m_values[0] * other.m_values[0] + m_values[1] * other.m_values[1] +
           m_values[2] * other.m_values[2] + m_values[3] * other.m_values[3];
  }

  /** \return the first three components */
  constexpr Vec3T<T> xyz() const { return Vec3T<T>(x(), y(), z()); }

  /** \return the product component by component */
  static constexpr Vec4T mul(Vec4T const& a, Vec4T const& b) {
    return Vec4T(a.x() * b.x(), a.y() * b.y(), a.z() * b.z(), a.w() * b.w());
  }

  /** \return the smaller of each component */
  static constexpr Vec4T min(Vec4T const& a, Vec4T const& b) {
    return Vec4T(std::min(a.x(), b.x()), std::min(a.y(), b.y()), std::min(a.z(), b.z()),
                 std::min(a.w(), b.w()));
  }

  /** \return the larger of each component */
  static constexpr Vec4T max(Vec4T const& a, Vec4T const& b) {
    return Vec4T(std::max(a.x(), b.x()), std::max(a.y(), b.y()), std::max(a.z(), b.z()),
                 std::max(a.w(), b.w()));
  }

  /** \return true if no component is infinite or not a number */
  bool isFinite() const {
    return std::isfinite(static_cast<Real>(x())) && std::isfinite(static_cast<Real>(y())) &&
           std::isfinite(static_cast<Real>(z())) && std::isfinite(static_cast<Real>(w()));
  }

#ifndef SWIG // the binding has one for all values
  /** \return true if every component differs by no more than epsilon */
  bool equals(Vec4T const& other, Real epsilon = 1e-6) const {
    for (std::size_t i = 0; i < 4; ++i) {
      if (!(std::abs(static_cast<Real>(m_values[i]) - static_cast<Real>(other.m_values[i])) <= epsilon)) {
        return false;
      }
    }
    return true;
  }
#endif

  constexpr Vec4T operator-() const { return Vec4T(-x(), -y(), -z(), -w()); }
  constexpr Vec4T operator+(Vec4T const& other) const {
    return Vec4T(x() + other.x(), y() + other.y(), z() + other.z(), w() + other.w());
  }
  constexpr Vec4T operator-(Vec4T const& other) const {
    return Vec4T(x() - other.x(), y() - other.y(), z() - other.z(), w() - other.w());
  }
  constexpr Vec4T operator*(T factor) const {
    return Vec4T(x() * factor, y() * factor, z() * factor, w() * factor);
  }
  constexpr Vec4T operator/(T divisor) const {
    return Vec4T(x() / divisor, y() / divisor, z() / divisor, w() / divisor);
  }

  /** \return the scalar product */
  constexpr T operator*(Vec4T const& other) const { return dot(other); }

  constexpr Vec4T& operator+=(Vec4T const& other) { return *this = *this + other; }
  constexpr Vec4T& operator-=(Vec4T const& other) { return *this = *this - other; }
  constexpr Vec4T& operator*=(T factor) { return *this = *this * factor; }
  constexpr Vec4T& operator/=(T divisor) { return *this = *this / divisor; }

  constexpr bool operator==(Vec4T const& other) const {
    return x() == other.x() && y() == other.y() && z() == other.z() && w() == other.w();
  }

private:
  static std::size_t checked(std::size_t index) {
    if (index >= 4) {
      throw std::out_of_range("Vec4: index " + std::to_string(index) + " is not 0 to 3");
    }
    return index;
  }

  T m_values[4] = {};
};

template <class T>
constexpr Vec4T<T> operator*(std::type_identity_t<T> factor, Vec4T<T> const& vector) {
  return vector * factor;
}

template <class T>
std::ostream& operator<<(std::ostream& stream, Vec4T<T> const& vector) {
  return stream << vector.x() << " " << vector.y() << " " << vector.z() << " " << vector.w();
}

typedef Vec4T<Real> Vec4;
typedef Vec4T<float> Vec4f;
typedef Vec4T<int> Vec4i;
typedef Vec4T<UInt32> Vec4u;

typedef Vector<Vec4> Vec4Vector;
typedef Vector<Vec4f> Vec4fVector;
typedef Vector<Vec4i> Vec4iVector;
typedef Vector<Vec4u> Vec4uVector;

} // namespace zor
