#include "runtime/Values.h"

#include <charconv>
#include <stdexcept>

namespace zorBinding {
namespace {

template <class Number>
std::string shortest(Number number) {
  char text[64];
  auto const result = std::to_chars(text, text + sizeof text, number);
  return std::string(text, result.ptr);
}

} // namespace

std::size_t checkedIndex(std::ptrdiff_t index, std::size_t size) {
  auto const count = static_cast<std::ptrdiff_t>(size);
  if (index < -count || index >= count) {
    throw std::out_of_range("index out of range");
  }
  return static_cast<std::size_t>(index < 0 ? index + count : index);
}

std::string numberText(double number) {
  return shortest(number);
}
std::string numberText(float number) {
  return shortest(number);
}

} // namespace zorBinding
