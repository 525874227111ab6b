#pragma once

#include <zor/Matrix3x3.h>
#include <zor/Quat.h>
#include <zor/Vec3.h>

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace zor {

/**
 * Affine transform for row vectors, as OpenSceneGraph has it: p' = p * M, the translation stands in the last
 * row, and A * B applies A first. The last column is always 0, 0, 0, 1.
 */
template <class T>
class AffineMatrix4x4T {
public:
  typedef T value_type;

  /** The identity. */
  constexpr AffineMatrix4x4T() = default;

  /** A rotation and a translation. \param rotate - unit quaternion, applied first \param translate - applied
   * afterwards */
  AffineMatrix4x4T(QuatT<T> const& rotate, Vec3T<T> const& translate)
      : AffineMatrix4x4T(Matrix3x3T<T>(rotate), translate) {}

  /** A rotation. \param rotate - unit quaternion */
  explicit AffineMatrix4x4T(QuatT<T> const& rotate) : AffineMatrix4x4T(rotate, Vec3T<T>()) {}
  /** A translation. */
  explicit constexpr AffineMatrix4x4T(Vec3T<T> const& translate) { setTranslate(translate); }

  /** \param linear - upper left block, applied first \param translate - last row */
  constexpr AffineMatrix4x4T(Matrix3x3T<T> const& linear, Vec3T<T> const& translate) {
    setLinear(linear);
    setTranslate(translate);
  }

  /** \param values - 16 numbers, row after row; those of the last column are ignored */
  explicit constexpr AffineMatrix4x4T(T const* values) {
    for (int row = 0; row < 4; ++row) {
      for (int col = 0; col < 3; ++col) {
        m_values[row][col] = values[4 * row + col];
      }
    }
  }

  template <class Other>
  explicit constexpr AffineMatrix4x4T(AffineMatrix4x4T<Other> const& other) {
    for (std::size_t row = 0; row < 4; ++row) {
      for (std::size_t col = 0; col < 3; ++col) {
        m_values[row][col] = static_cast<T>(other(row, col));
      }
    }
  }

  /** \return a translation */
  static constexpr AffineMatrix4x4T translate(Vec3T<T> const& translate) {
    return AffineMatrix4x4T(translate);
  }
  /** \return a translation */
  static constexpr AffineMatrix4x4T translate(T x, T y, T z) { return AffineMatrix4x4T(Vec3T<T>(x, y, z)); }
  /** \param rotate - unit quaternion \return a rotation */
  static AffineMatrix4x4T rotate(QuatT<T> const& rotate) { return AffineMatrix4x4T(rotate); }
  /** \param angle - in radians \param axis - any length \return a rotation */
  static AffineMatrix4x4T rotate(T angle, Vec3T<T> const& axis) {
    return AffineMatrix4x4T(QuatT<T>(angle, axis));
  }
  /** \return the shortest rotation that turns the direction from into the direction to */
  static AffineMatrix4x4T rotate(Vec3T<T> const& from, Vec3T<T> const& to) {
    return AffineMatrix4x4T(QuatT<T>(from, to));
  }
  /** \param factors - one for each axis \return a scale */
  static constexpr AffineMatrix4x4T scale(Vec3T<T> const& factors) {
    AffineMatrix4x4T result;
    for (std::size_t i = 0; i < 3; ++i) {
      result.m_values[i][i] = factors[i];
    }
    return result;
  }

  /** Element without a check of the position; the last column must not be changed. */
  constexpr T& operator()(std::size_t row, std::size_t col) { return m_values[row][col]; }
  constexpr T operator()(std::size_t row, std::size_t col) const { return m_values[row][col]; }

  /** \return an element \throws std::out_of_range if row or col is not 0 to 3 */
  T get(std::size_t row, std::size_t col) const {
    check(row, col, 4);
    return m_values[row][col];
  }

  /** Sets an element. \throws std::out_of_range if row is not 0 to 3 or col is not 0 to 2 */
  void set(std::size_t row, std::size_t col, T value) {
    check(row, col, 3);
    m_values[row][col] = value;
  }

  /** \return the 16 elements row after row */
  constexpr T* ptr() { return &m_values[0][0]; }
  constexpr T const* ptr() const { return &m_values[0][0]; }

  /** \return the last row: where the origin goes */
  constexpr Vec3T<T> getTranslate() const { return Vec3T<T>(m_values[3][0], m_values[3][1], m_values[3][2]); }
  /** Sets where the origin goes; rotation and scale stay. */
  constexpr void setTranslate(Vec3T<T> const& translate) {
    for (std::size_t i = 0; i < 3; ++i) {
      m_values[3][i] = translate[i];
    }
  }
  /** Sets where the origin goes; rotation and scale stay. */
  constexpr void setTranslate(T x, T y, T z) { setTranslate(Vec3T<T>(x, y, z)); }

  /** \return the rotation without the scale, as a unit quaternion */
  QuatT<T> getRotate() const { return getLinear().getRotate(); }

  /** Replaces rotation and scale by a rotation and leaves the translation. \param rotate - unit quaternion */
  void setRotate(QuatT<T> const& rotate) { setLinear(Matrix3x3T<T>(rotate)); }

  /** \return the lengths of the three axes */
  Vec3T<T> getScale() const {
    Matrix3x3T<T> const linear = getLinear();
    return Vec3T<T>(static_cast<T>(linear.getRow(0).length()), static_cast<T>(linear.getRow(1).length()),
                    static_cast<T>(linear.getRow(2).length()));
  }

  /** \return the upper left 3 x 3 block: rotation and scale */
  constexpr Matrix3x3T<T> getLinear() const {
    Matrix3x3T<T> result;
    for (std::size_t row = 0; row < 3; ++row) {
      for (std::size_t col = 0; col < 3; ++col) {
        result(row, col) = m_values[row][col];
      }
    }
    return result;
  }

  /** Sets rotation and scale; the translation stays. */
  constexpr void setLinear(Matrix3x3T<T> const& linear) {
    for (std::size_t row = 0; row < 3; ++row) {
      for (std::size_t col = 0; col < 3; ++col) {
        m_values[row][col] = linear(row, col);
      }
    }
  }

  /** Makes this the transform that changes nothing. */
  constexpr void makeIdentity() { *this = AffineMatrix4x4T(); }
  /** \return true if this changes nothing, exactly */
  constexpr bool isIdentity() const { return *this == AffineMatrix4x4T(); }

  /** \return true if no element is infinite or not a number */
  bool isFinite() const {
    for (std::size_t row = 0; row < 4; ++row) {
      if (!Vec3T<T>(m_values[row][0], m_values[row][1], m_values[row][2]).isFinite()) {
        return false;
      }
    }
    return true;
  }

#ifndef SWIG
  /** \return true if every element differs by no more than epsilon */
  bool equals(AffineMatrix4x4T const& other, Real epsilon = 1e-6) const {
    return getLinear().equals(other.getLinear(), epsilon) &&
           getTranslate().equals(other.getTranslate(), epsilon);
  }
#endif

  /** \return the transform that undoes this one \throws std::runtime_error if there is none (a scale is 0) */
  AffineMatrix4x4T inverse() const {
    Matrix3x3T<T> const linear = getLinear().inverse();
    return AffineMatrix4x4T(linear, -(getTranslate() * linear));
  }

  /** \return point * this: rotation, scale and translation applied */
  constexpr Vec3T<T> transformPoint(Vec3T<T> const& point) const {
    return transformVector(point) + getTranslate();
  }

  /** \return a direction with rotation and scale applied */
  constexpr Vec3T<T> transformVector(Vec3T<T> const& v) const {
    return Vec3T<T>(v.x() * m_values[0][0] + v.y() * m_values[1][0] + v.z() * m_values[2][0],
                    v.x() * m_values[0][1] + v.y() * m_values[1][1] + v.z() * m_values[2][1],
                    v.x() * m_values[0][2] + v.y() * m_values[1][2] + v.z() * m_values[2][2]);
  }

  /** \return point * this */
  constexpr Vec3T<T> preMult(Vec3T<T> const& point) const { return transformPoint(point); }

  /** \return the transform by this matrix, followed by the one by next */
  constexpr AffineMatrix4x4T operator*(AffineMatrix4x4T const& next) const {
    return AffineMatrix4x4T(getLinear() * next.getLinear(), next.transformPoint(getTranslate()));
  }

  constexpr AffineMatrix4x4T& operator*=(AffineMatrix4x4T const& next) { return *this = *this * next; }

  constexpr bool operator==(AffineMatrix4x4T const& other) const {
    for (std::size_t row = 0; row < 4; ++row) {
      for (std::size_t col = 0; col < 3; ++col) {
        if (m_values[row][col] != other.m_values[row][col]) {
          return false;
        }
      }
    }
    return true;
  }

private:
  static void check(std::size_t row, std::size_t col, std::size_t columns) {
    if (row >= 4 || col >= columns) {
      throw std::out_of_range("AffineMatrix4x4: no element at row " + std::to_string(row) + ", column " +
                              std::to_string(col));
    }
  }

  T m_values[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

/** \return the transformed point */
template <class T>
constexpr Vec3T<T> operator*(Vec3T<T> const& point, AffineMatrix4x4T<T> const& matrix) {
  return matrix.transformPoint(point);
}

template <class T>
std::ostream& operator<<(std::ostream& stream, AffineMatrix4x4T<T> const& matrix) {
  for (std::size_t row = 0; row < 4; ++row) {
    stream << (row == 0 ? "[" : "; ") << matrix(row, 0) << " " << matrix(row, 1) << " " << matrix(row, 2)
           << " " << matrix(row, 3);
  }
  return stream << "]";
}

typedef AffineMatrix4x4T<Real> AffineMatrix4x4;
typedef AffineMatrix4x4T<float> AffineMatrix4x4f;
typedef Vector<AffineMatrix4x4> AffineMatrix4x4Vector;

} // namespace zor
