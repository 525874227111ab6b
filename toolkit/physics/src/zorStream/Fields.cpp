#include "zorStream/Fields.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "bullet/Conversions.h"

namespace zorStream {

namespace {

// The double with the fewest digits that is this float, so that 0.8f is written as 0.8.
double shortest(float value) {
  char text[64];
  auto const end = std::to_chars(text, text + sizeof text, value);
  double result = value;
  if (end.ec == std::errc())
    std::from_chars(text, end.ptr, result);
  return static_cast<float>(result) == value ? result : value;
}

template <class Value>
void numbers(Archive& archive, char const* name, Value* values, std::size_t count) {
  archive.beginTuple(name, count);
  for (std::size_t i = 0; i < count; ++i)
    field(archive, nullptr, values[i]);
  archive.endList();
}

template <class Small, class Large>
void narrow(Archive& archive, char const* name, Small& value) {
  Large large = value;
  archive.value(name, large);
  if (archive.reading() &&
      (large < std::numeric_limits<Small>::min() || large > std::numeric_limits<Small>::max()))
    archive.fail(name, "is " + std::to_string(large) + ", which is out of range");
  value = static_cast<Small>(large);
}

} // namespace

void field(Archive& archive, char const* name, float& value) {
  double number = shortest(value);
  archive.value(name, number);
  if (std::isfinite(number) && std::abs(number) > std::numeric_limits<float>::max())
    archive.fail(name, "is too large for a number of single precision");
  value = static_cast<float>(number);
}

void field(Archive& archive, char const* name, int& value) {
  narrow<int, std::int64_t>(archive, name, value);
}

void field(Archive& archive, char const* name, std::uint8_t& value) {
  narrow<std::uint8_t, std::uint64_t>(archive, name, value);
}

void field(Archive& archive, char const* name, std::uint32_t& value) {
  narrow<std::uint32_t, std::uint64_t>(archive, name, value);
}

void field(Archive& archive, char const* name, zor::Vec2& value) {
  numbers(archive, name, value.ptr(), 2);
}

void field(Archive& archive, char const* name, zor::Vec3& value) {
  numbers(archive, name, value.ptr(), 3);
}

void field(Archive& archive, char const* name, zor::Vec4f& value) {
  numbers(archive, name, value.ptr(), 4);
}

void field(Archive& archive, char const* name, zor::Matrix3x3& value) {
  double elements[9];
  for (std::size_t i = 0; i < 9; ++i)
    elements[i] = value(i / 3, i % 3);
  numbers(archive, name, elements, 9);
  for (std::size_t i = 0; i < 9; ++i)
    value(i / 3, i % 3) = elements[i];
}

void field(Archive& archive, char const* name, zor::AffineMatrix4x4& value) {
  double elements[12];
  for (std::size_t i = 0; i < 12; ++i)
    elements[i] = value(i / 3, i % 3);
  numbers(archive, name, elements, 12);
  for (std::size_t i = 0; i < 12; ++i)
    value(i / 3, i % 3) = elements[i];
  if (archive.reading() && !value.isFinite())
    archive.fail(name, "is not finite");
}

void field(Archive& archive, char const* name, zor::RangeReal& value) {
  double ends[2] = {value.lower(), value.upper()};
  numbers(archive, name, ends, 2);
  if (archive.reading())
    checked(archive, name, [&] { value = zor::RangeReal(ends[0], ends[1]); });
}

void field(Archive& archive, char const* name, zorRender::Color& value) {
  float parts[4] = {value.r(), value.g(), value.b(), value.a()};
  numbers(archive, name, parts, 4);
  value = zorRender::Color(parts[0], parts[1], parts[2], parts[3]);
}

void field(Archive& archive, char const* name, btVector3& value) {
  double parts[3] = {value.x(), value.y(), value.z()};
  numbers(archive, name, parts, 3);
  value = btVector3(parts[0], parts[1], parts[2]);
}

void field(Archive& archive, char const* name, btTransform& value) {
  zor::AffineMatrix4x4 matrix = zorBullet::fromBt(value);
  field(archive, name, matrix);
  value = zorBullet::toBt(matrix);
}

} // namespace zorStream
