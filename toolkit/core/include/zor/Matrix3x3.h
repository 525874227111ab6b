#pragma once

#include <zor/Quat.h>
#include <zor/Vec3.h>

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace zor {

/** Matrix of 3 x 3 numbers for row vectors: v' = v * M, and A * B applies A first. */
template <class T>
class Matrix3x3T {
public:
  typedef T value_type;

  /** The identity. */
  constexpr Matrix3x3T() = default;

  /** The matrix of three rows, which are the images of the axes. */
  constexpr Matrix3x3T(Vec3T<T> const& row0, Vec3T<T> const& row1, Vec3T<T> const& row2)
      : m_rows{row0, row1, row2} {}

  /** The matrix of a rotation. \param rotate - unit quaternion */
  explicit constexpr Matrix3x3T(QuatT<T> const& rotate)
      : m_rows{rotate.rotate(Vec3T<T>(1, 0, 0)), rotate.rotate(Vec3T<T>(0, 1, 0)),
               rotate.rotate(Vec3T<T>(0, 0, 1))} {}

  /** Element without a check of the position. */
  constexpr T& operator()(std::size_t row, std::size_t col) { return m_rows[row][col]; }
  constexpr T operator()(std::size_t row, std::size_t col) const { return m_rows[row][col]; }

  /** \return a row, which is the image of an axis \throws std::out_of_range if row is not 0 to 2 */
  Vec3T<T> getRow(std::size_t row) const {
    if (row >= 3) {
      throw std::out_of_range("Matrix3x3: row " + std::to_string(row) + " is not 0 to 2");
    }
    return m_rows[row];
  }

  /** \return the matrix with rows and columns exchanged */
  constexpr Matrix3x3T transpose() const {
    Matrix3x3T result;
    for (std::size_t row = 0; row < 3; ++row) {
      for (std::size_t col = 0; col < 3; ++col) {
        result(row, col) = (*this)(col, row);
      }
    }
    return result;
  }

  /** \return the determinant: by what a volume is multiplied */
  constexpr T determinant() const { return m_rows[0].dot(m_rows[1].cross(m_rows[2])); }

  /** \return the inverse \throws std::runtime_error if the determinant is 0 or not finite */
  Matrix3x3T inverse() const {
    T const det = determinant();
    if (det == T(0) || !std::isfinite(det)) {
      throw std::runtime_error("matrix has no inverse, its determinant is " + std::to_string(det));
    }
    Matrix3x3T const adjoint(m_rows[1].cross(m_rows[2]), m_rows[2].cross(m_rows[0]),
                             m_rows[0].cross(m_rows[1]));
    return adjoint.transpose() * (T(1) / det);
  }

  /** \return the rotation without the scale, as a unit quaternion */
  QuatT<T> getRotate() const {
    Vec3T<T> const a = m_rows[0].normal(), b = m_rows[1].normal(), c = m_rows[2].normal();
    QuatT<T> q = fromAxes(a, b, c);
    q.normalize();
    return q;
  }

#ifndef SWIG
  /** \return true if every element differs by no more than epsilon */
  bool equals(Matrix3x3T const& other, Real epsilon = 1e-6) const {
    return m_rows[0].equals(other.m_rows[0], epsilon) && m_rows[1].equals(other.m_rows[1], epsilon) &&
           m_rows[2].equals(other.m_rows[2], epsilon);
  }
#endif

  constexpr Matrix3x3T operator*(T factor) const {
    return Matrix3x3T(m_rows[0] * factor, m_rows[1] * factor, m_rows[2] * factor);
  }

  constexpr Matrix3x3T operator*(Matrix3x3T const& next) const {
    return Matrix3x3T(m_rows[0] * next, m_rows[1] * next, m_rows[2] * next);
  }

  constexpr bool operator==(Matrix3x3T const& other) const {
    return m_rows[0] == other.m_rows[0] && m_rows[1] == other.m_rows[1] && m_rows[2] == other.m_rows[2];
  }

  friend constexpr Vec3T<T> operator*(Vec3T<T> const& vector, Matrix3x3T const& matrix) {
    return matrix.m_rows[0] * vector.x() + matrix.m_rows[1] * vector.y() + matrix.m_rows[2] * vector.z();
  }

private:
  // Takes the root of the largest of the four squares, the only one that is never near zero.
  static QuatT<T> fromAxes(Vec3T<T> const& a, Vec3T<T> const& b, Vec3T<T> const& c) {
    if (a.x() + b.y() + c.z() > T(0)) {
      T const s = std::sqrt(T(1) + a.x() + b.y() + c.z()) * T(2);
      return QuatT<T>((b.z() - c.y()) / s, (c.x() - a.z()) / s, (a.y() - b.x()) / s, s / T(4));
    }
    if (a.x() > b.y() && a.x() > c.z()) {
      T const s = std::sqrt(T(1) + a.x() - b.y() - c.z()) * T(2);
      return QuatT<T>(s / T(4), (a.y() + b.x()) / s, (c.x() + a.z()) / s, (b.z() - c.y()) / s);
    }
    if (b.y() > c.z()) {
      T const s = std::sqrt(T(1) + b.y() - a.x() - c.z()) * T(2);
      return QuatT<T>((a.y() + b.x()) / s, s / T(4), (b.z() + c.y()) / s, (c.x() - a.z()) / s);
    }
    T const s = std::sqrt(T(1) + c.z() - a.x() - b.y()) * T(2);
    return QuatT<T>((c.x() + a.z()) / s, (b.z() + c.y()) / s, s / T(4), (a.y() - b.x()) / s);
  }

  Vec3T<T> m_rows[3] = {Vec3T<T>(1, 0, 0), Vec3T<T>(0, 1, 0), Vec3T<T>(0, 0, 1)};
};

template <class T>
std::ostream& operator<<(std::ostream& stream, Matrix3x3T<T> const& matrix) {
  return stream << "[" << matrix.getRow(0) << "; " << matrix.getRow(1) << "; " << matrix.getRow(2) << "]";
}

typedef Matrix3x3T<Real> Matrix3x3;
typedef Matrix3x3T<float> Matrix3x3f;

} // namespace zor
