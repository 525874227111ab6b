#include <Python.h>

#include "runtime/Values.h"

#include <charconv>
#include <stdexcept>

namespace zorBinding {
namespace {

template <class Number>
std::string shortest(Number number) {
  char buffer[64];
  auto const result = std::to_chars(buffer, buffer + sizeof buffer, number);
  std::string const text(buffer, result.ptr);
  if (!std::isfinite(number)) {
    return "float('" + text + "')";
  }
  return text == "-0" ? "-0.0" : text; // the whole number has no sign
}

} // namespace

std::size_t checkedIndex(std::ptrdiff_t index, std::size_t size) {
  auto const count = static_cast<std::ptrdiff_t>(size);
  if (index < -count || index >= count) {
    throw std::out_of_range("index out of range");
  }
  return static_cast<std::size_t>(index < 0 ? index + count : index);
}

void throwOverflow() {
  PyErr_SetString(PyExc_OverflowError, "the result is too large for the type of the components");
  throw std::runtime_error("the Python error says what is wrong");
}

std::string numberText(double number) {
  return shortest(number);
}
std::string numberText(float number) {
  return shortest(number);
}

} // namespace zorBinding
