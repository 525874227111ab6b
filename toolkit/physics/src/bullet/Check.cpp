#include "bullet/Check.h"

#include <cmath>
#include <sstream>
#include <stdexcept>

namespace zorBullet {
namespace {

[[noreturn]] void fail(char const* who, std::string const& text) {
  throw std::invalid_argument(std::string(who) + ": " + text);
}

[[noreturn]] void fail(char const* who, char const* what, double value, char const* rule) {
  std::ostringstream text;
  text << what << " is " << value << ", but must be " << rule;
  fail(who, text.str());
}

} // namespace

double checkPositive(char const* who, char const* what, double value) {
  if (!(value > 0.0) || !std::isfinite(value))
    fail(who, what, value, "positive and finite");
  return value;
}

double checkNotNegative(char const* who, char const* what, double value) {
  if (!(value >= 0.0) || !std::isfinite(value))
    fail(who, what, value, "not negative and finite");
  return value;
}

double checkFraction(char const* who, char const* what, double value) {
  if (!(value >= 0.0 && value <= 1.0))
    fail(who, what, value, "between 0 and 1");
  return value;
}

zor::Vec3 const& checkFinite(char const* who, char const* what, zor::Vec3 const& value) {
  if (!value.isFinite())
    fail(who, std::string(what) + " is not finite");
  return value;
}

zor::AffineMatrix4x4 const& checkRigid(char const* who, zor::AffineMatrix4x4 const& transform) {
  constexpr double tolerance = 1e-6;
  zor::Vec3 rows[4];
  for (size_t row = 0; row < 4; ++row)
    for (size_t column = 0; column < 3; ++column)
      rows[row][column] = transform(row, column);
  for (zor::Vec3 const& row : rows)
    checkFinite(who, "transform", row);
  for (size_t row = 0; row < 3; ++row)
    if (std::abs(rows[row].length2() - 1.0) > tolerance ||
        std::abs(rows[row].dot(rows[(row + 1) % 3])) > tolerance)
      fail(who, "transform scales or shears, but must only rotate and translate");
  if (rows[0].cross(rows[1]).dot(rows[2]) < 0.0)
    fail(who, "transform mirrors, but must only rotate and translate");
  return transform;
}

void checkVertices(char const* who, zor::Vec3Vector const& vertices) {
  for (size_t i = 0; i < vertices.size(); ++i)
    if (!vertices[i].isFinite())
      fail(who, "vertex " + std::to_string(i) + " is not finite");
}

void checkTriangles(char const* who, zor::UInt32Vector const& indices, size_t numVertices) {
  if (indices.empty())
    fail(who, "there are no triangles");
  if (indices.size() % 3 != 0)
    fail(who, std::to_string(indices.size()) + " indices are not three a triangle");
  for (size_t i = 0; i < indices.size(); ++i)
    if (indices[i] >= numVertices)
      fail(who, "index " + std::to_string(indices[i]) + " of triangle " + std::to_string(i / 3) +
                    " is beyond the " + std::to_string(numVertices) + " vertices");
}

void checkIndex(char const* who, size_t index, size_t size) {
  if (index >= size)
    throw std::out_of_range(std::string(who) + ": index " + std::to_string(index) + " is beyond the " +
                            std::to_string(size) + " elements");
}

} // namespace zorBullet
