#pragma once

#include <zor/Vec3.h>
#include <zor/Vec4.h>

#include <cmath>
#include <ostream>

namespace zor {

/** Quaternion x i + y j + z k + w. Rotations are unit quaternions; a * b rotates by a first, then by b. */
template <class T>
class QuatT {
public:
  typedef T value_type;

  /** The rotation that changes nothing. */
  constexpr QuatT() = default;
  /** The quaternion x i + y j + z k + w. */
  constexpr QuatT(T x, T y, T z, T w) : m_values{x, y, z, w} {}
  /** The quaternion of four components in the order x, y, z, w. */
  explicit constexpr QuatT(Vec4T<T> const& values)
      : m_values{values.x(), values.y(), values.z(), values.w()} {}

  /** \param angle - in radians, right-handed \param axis - any length; a null axis gives no rotation */
  QuatT(T angle, Vec3T<T> const& axis) {
    Vec3T<T> const unit = axis.normal();
    if (unit.length2() > T(0)) {
      T const s = std::sin(angle / 2);
      *this = QuatT(unit.x() * s, unit.y() * s, unit.z() * s, std::cos(angle / 2));
    }
  }

  /** The shortest rotation that turns the direction from into the direction to; null vectors give none. */
  QuatT(Vec3T<T> const& from, Vec3T<T> const& to) {
    Vec3T<T> const a = from.normal();
    Vec3T<T> const b = to.normal();
    if (a == Vec3T<T>() || b == Vec3T<T>()) {
      return;
    }
    T const d = a.dot(b);
    if (d <= T(-1) + T(1e-12)) { // half a turn about any axis at a right angle
      Vec3T<T> const axis = a.perpendicular();
      *this = QuatT(axis.x(), axis.y(), axis.z(), T(0));
      return;
    }
    Vec3T<T> const axis = a.cross(b);
    *this = QuatT(axis.x(), axis.y(), axis.z(), T(1) + d);
    normalize();
  }

  template <class Other>
  explicit constexpr QuatT(QuatT<Other> const& other)
      : m_values{static_cast<T>(other.x()), static_cast<T>(other.y()), static_cast<T>(other.z()),
                 static_cast<T>(other.w())} {}

  /** Rotation about the fixed X axis, then Y, then Z. Angles in radians. */
  static QuatT fromEuler(T aboutX, T aboutY, T aboutZ) {
    return QuatT(aboutX, Vec3T<T>(1, 0, 0)) * QuatT(aboutY, Vec3T<T>(0, 1, 0)) *
           QuatT(aboutZ, Vec3T<T>(0, 0, 1));
  }

  constexpr T& x() { return m_values[0]; }
  /** \return the factor of i */
  constexpr T x() const { return m_values[0]; }
  constexpr T& y() { return m_values[1]; }
  /** \return the factor of j */
  constexpr T y() const { return m_values[1]; }
  constexpr T& z() { return m_values[2]; }
  /** \return the factor of k */
  constexpr T z() const { return m_values[2]; }
  constexpr T& w() { return m_values[3]; }
  /** \return the real part */
  constexpr T w() const { return m_values[3]; }

  /** Component without a check of the index, in the order x, y, z, w. */
  constexpr T& operator[](std::size_t index) { return m_values[index]; }
  constexpr T operator[](std::size_t index) const { return m_values[index]; }

  /** \return a component \throws std::out_of_range if index is not 0 to 3 */
  T get(std::size_t index) const { return asVec4().get(index); }

  /** Sets all components. */
  constexpr void set(T x, T y, T z, T w) { *this = QuatT(x, y, z, w); }
  constexpr T* ptr() { return m_values; }
  constexpr T const* ptr() const { return m_values; }
  /** \return the components in the order x, y, z, w */
  constexpr Vec4T<T> asVec4() const { return Vec4T<T>(x(), y(), z(), w()); }

  /** \return the square of the length; 1 for a rotation */
  constexpr T length2() const { return asVec4().length2(); }
  /** \return the length; 1 for a rotation */
  Real length() const { return asVec4().length(); }

  /** Scales to length 1. \return the length before; a null quaternion stays */
  Real normalize() {
    Real const before = length();
    if (before > 0.0) {
      *this = *this * static_cast<T>(1.0 / before);
    }
    return before;
  }

  /** \return the conjugate: of a unit quaternion the rotation that undoes it */
  constexpr QuatT conj() const { return QuatT(-x(), -y(), -z(), w()); }

  /** \return the rotation that undoes this one; a null quaternion is returned unchanged */
  constexpr QuatT inverse() const {
    T const l2 = length2();
    return l2 > T(0) ? conj() * (T(1) / l2) : *this;
  }

  /** \return the rotated vector, for a unit quaternion */
  constexpr Vec3T<T> rotate(Vec3T<T> const& vector) const {
    Vec3T<T> const u(x(), y(), z());
    Vec3T<T> const t = u.cross(vector) * T(2);
    return vector + t * w() + u.cross(t);
  }

  /** \return the angle of the rotation in radians, 0 to 2 pi */
  T getAngle() const { return T(2) * std::atan2(static_cast<T>(Vec3T<T>(x(), y(), z()).length()), w()); }

  /** \return the axis of the rotation; the X axis if there is no rotation */
  Vec3T<T> getAxis() const {
    Vec3T<T> const axis = Vec3T<T>(x(), y(), z()).normal();
    return axis == Vec3T<T>() ? Vec3T<T>(1, 0, 0) : axis;
  }

  /** \return the rotation at fraction t, 0 to 1, of the shorter way from a to b at even speed */
  static QuatT slerp(T t, QuatT const& a, QuatT const& b) {
    T cosine = a.asVec4().dot(b.asVec4());
    QuatT const end = cosine < T(0) ? b * T(-1) : b;
    cosine = std::abs(cosine);
    T const omega = std::acos(std::min(cosine, T(1)));
    T const sine = std::sin(omega);
    // Nearly the same rotation: the straight line is exact enough and needs no division by almost nothing.
    T const wa = sine > T(1e-6) ? std::sin((T(1) - t) * omega) / sine : T(1) - t;
    T const wb = sine > T(1e-6) ? std::sin(t * omega) / sine : t;
    QuatT result = a * wa + end * wb;
    result.normalize();
    return result;
  }

  /** \return true if no component is infinite or not a number */
  bool isFinite() const { return asVec4().isFinite(); }
#ifndef SWIG
  /** \return true if every component differs by no more than epsilon */
  bool equals(QuatT const& other, Real epsilon = 1e-6) const {
    return asVec4().equals(other.asVec4(), epsilon);
  }
#endif

  constexpr QuatT operator+(QuatT const& o) const {
    return QuatT(x() + o.x(), y() + o.y(), z() + o.z(), w() + o.w());
  }
  constexpr QuatT operator*(T factor) const {
    return QuatT(x() * factor, y() * factor, z() * factor, w() * factor);
  }

  /** \return the rotation by this quaternion, followed by the one by next */
  constexpr QuatT operator*(QuatT const& next) const {
    QuatT const& n = next;
    return QuatT(n.w() * x() + n.x() * w() + n.y() * z() - n.z() * y(),
                 n.w() * y() - n.x() * z() + n.y() * w() + n.z() * x(),
                 n.w() * z() + n.x() * y() - n.y() * x() + n.z() * w(),
                 n.w() * w() - n.x() * x() - n.y() * y() - n.z() * z());
  }

  constexpr QuatT& operator*=(QuatT const& next) { return *this = *this * next; }

  /** \return the rotated vector, for a unit quaternion */
  constexpr Vec3T<T> operator*(Vec3T<T> const& vector) const { return rotate(vector); }

  constexpr bool operator==(QuatT const& other) const { return asVec4() == other.asVec4(); }

private:
  T m_values[4] = {T(0), T(0), T(0), T(1)};
};

template <class T>
std::ostream& operator<<(std::ostream& stream, QuatT<T> const& q) {
  return stream << q.asVec4();
}

typedef QuatT<Real> Quat;
typedef QuatT<float> Quatf;
typedef Vector<Quat> QuatVector;

} // namespace zor
