#pragma once

#include <cmath>
#include <stdexcept>
#include <string>

#include <zor/AffineMatrix4x4.h>
#include <zor/Types.h>
#include <zor/Vec3.h>

namespace zor {

// Checks of arguments; `where` names the method for the message.

inline void checkFinite(Real value, char const* where) {
  if (!std::isfinite(value))
    throw std::invalid_argument(std::string(where) + ": value is not finite");
}

inline void checkFinite(Vec3 const& value, char const* where) {
  if (!value.isFinite())
    throw std::invalid_argument(std::string(where) + ": vector is not finite");
}

inline void checkNotNegative(Real value, char const* where) {
  if (!(value >= 0) || !std::isfinite(value))
    throw std::invalid_argument(std::string(where) + ": value must be finite and not negative, is " +
                                std::to_string(value));
}

inline void checkPositive(Real value, char const* where) {
  if (!(value > 0) || !std::isfinite(value))
    throw std::invalid_argument(std::string(where) + ": value must be finite and larger than zero, is " +
                                std::to_string(value));
}

/** Rotation and translation only, no scale and no mirror. */
inline void checkRigid(AffineMatrix4x4 const& matrix, char const* where) {
  Matrix3x3 const linear = matrix.getLinear();
  bool const rigid = matrix.isFinite() && (linear * linear.transpose()).equals(Matrix3x3(), 1e-6) &&
                     linear.determinant() > 0;
  if (!rigid)
    throw std::invalid_argument(std::string(where) +
                                ": the matrix must be a rotation and a translation only");
}

template <class T>
T& checkNotNull(T* pointer, char const* where) {
  if (!pointer)
    throw std::invalid_argument(std::string(where) + ": null object");
  return *pointer;
}

} // namespace zor
