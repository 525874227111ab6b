#pragma once

#include <stdexcept>
#include <string>

#include <zor/AffineMatrix4x4.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

namespace zorBullet {

// Tests of what users give. Each throws std::invalid_argument "<who>: <what> ...", and returns the value.

double checkPositive(char const* who, char const* what, double value);
double checkNotNegative(char const* who, char const* what, double value);
double checkFraction(char const* who, char const* what, double value);
zor::Vec3 const& checkFinite(char const* who, char const* what, zor::Vec3 const& value);
/** Rotation and translation only. */
zor::AffineMatrix4x4 const& checkRigid(char const* who, zor::AffineMatrix4x4 const& transform);
void checkVertices(char const* who, zor::Vec3Vector const& vertices);
/** At least one triangle, all indices within the vertices. */
void checkTriangles(char const* who, zor::UInt32Vector const& indices, size_t numVertices);
void checkIndex(char const* who, size_t index, size_t size); // std::out_of_range

template <class T>
T& checkNotNull(char const* who, char const* what, T* pointer) {
  if (!pointer)
    throw std::invalid_argument(std::string(who) + ": " + what + " is null");
  return *pointer;
}

} // namespace zorBullet
