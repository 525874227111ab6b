#pragma once

#include <zor/Types.h>
#include <zor/Vector.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <stdexcept>
#include <type_traits>

namespace zor {

/** Vector of 2 components. */
template <class T>
class Vec2T {
public:
  typedef T value_type;

  /** The null vector. */
  constexpr Vec2T() = default;
  /** A vector of two components. */
  constexpr Vec2T(T x, T y) : m_values{x, y} {}

  /** Converts from another component type. */
  template <class Other>
  explicit constexpr Vec2T(Vec2T<Other> const& other)
      : m_values{static_cast<T>(other.x()), static_cast<T>(other.y())} {}

  constexpr T& x() { return m_values[0]; }
  /** \return the first component */
  constexpr T x() const { return m_values[0]; }
  constexpr T& y() { return m_values[1]; }
  /** \return the second component */
  constexpr T y() const { return m_values[1]; }

  /** Component without a check of the index. */
  constexpr T& operator[](std::size_t index) { return m_values[index]; }
  constexpr T operator[](std::size_t index) const { return m_values[index]; }

  /** \return a component \throws std::out_of_range if index is not 0 to 1 */
  T get(std::size_t index) const { return m_values[checked(index)]; }

  /** Sets a component. \throws std::out_of_range if index is not 0 to 1 */
  void set(std::size_t index, T value) { m_values[checked(index)] = value; }

  /** Sets all components. */
  constexpr void set(T x, T y) { *this = Vec2T(x, y); }

  /** \return the 2 components in order */
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
  Vec2T normal() const {
    Vec2T result(*this);
    result.normalize();
    return result;
  }

  /** \return the scalar product */
  constexpr T dot(Vec2T const& other) const {
    return m_values[0] * other.m_values[0] + m_values[1] * other.m_values[1];
  }

  /** \return the product component by component */
  static constexpr Vec2T mul(Vec2T const& a, Vec2T const& b) { return Vec2T(a.x() * b.x(), a.y() * b.y()); }

  /** \return the smaller of each component */
  static constexpr Vec2T min(Vec2T const& a, Vec2T const& b) {
    return Vec2T(std::min(a.x(), b.x()), std::min(a.y(), b.y()));
  }

  /** \return the larger of each component */
  static constexpr Vec2T max(Vec2T const& a, Vec2T const& b) {
    return Vec2T(std::max(a.x(), b.x()), std::max(a.y(), b.y()));
  }

  /** \return true if no component is infinite or not a number */
  bool isFinite() const {
    return std::isfinite(static_cast<Real>(x())) && std::isfinite(static_cast<Real>(y()));
  }

#ifndef SWIG // the binding has one for all values
  /** \return true if every component differs by no more than epsilon */
  bool equals(Vec2T const& other, Real epsilon = 1e-6) const {
    for (std::size_t i = 0; i < 2; ++i) {
      if (!(std::abs(static_cast<Real>(m_values[i]) - static_cast<Real>(other.m_values[i])) <= epsilon)) {
        return false;
      }
    }
    return true;
  }
#endif

  constexpr Vec2T operator-() const { return Vec2T(-x(), -y()); }
  constexpr Vec2T operator+(Vec2T const& other) const { return Vec2T(x() + other.x(), y() + other.y()); }
  constexpr Vec2T operator-(Vec2T const& other) const { return Vec2T(x() - other.x(), y() - other.y()); }
  constexpr Vec2T operator*(T factor) const { return Vec2T(x() * factor, y() * factor); }
  constexpr Vec2T operator/(T divisor) const { return Vec2T(x() / divisor, y() / divisor); }

  /** \return the scalar product */
  constexpr T operator*(Vec2T const& other) const { return dot(other); }

  constexpr Vec2T& operator+=(Vec2T const& other) { return *this = *this + other; }
  constexpr Vec2T& operator-=(Vec2T const& other) { return *this = *this - other; }
  constexpr Vec2T& operator*=(T factor) { return *this = *this * factor; }
  constexpr Vec2T& operator/=(T divisor) { return *this = *this / divisor; }

  constexpr bool operator==(Vec2T const& other) const { return x() == other.x() && y() == other.y(); }

private:
  static std::size_t checked(std::size_t index) {
    if (index >= 2) {
      throw std::out_of_range("Vec2: index " + std::to_string(index) + " is not 0 to 1");
    }
    return index;
  }

  T m_values[2] = {};
};

template <class T>
constexpr Vec2T<T> operator*(std::type_identity_t<T> factor, Vec2T<T> const& vector) {
  return vector * factor;
}

template <class T>
std::ostream& operator<<(std::ostream& stream, Vec2T<T> const& vector) {
  return stream << vector.x() << " " << vector.y();
}

typedef Vec2T<Real> Vec2;
typedef Vec2T<float> Vec2f;
typedef Vec2T<int> Vec2i;
typedef Vec2T<UInt32> Vec2u;

typedef Vector<Vec2> Vec2Vector;
typedef Vector<Vec2f> Vec2fVector;
typedef Vector<Vec2i> Vec2iVector;
typedef Vector<Vec2u> Vec2uVector;

} // namespace zor
