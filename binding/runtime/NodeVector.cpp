#include "runtime/NodeVector.h"

#include <stdexcept>

namespace zorBinding {

std::size_t checkedPosition(int index, std::size_t size) {
  if (index < 0 || static_cast<std::size_t>(index) >= size) {
    throw std::out_of_range("index");
  }
  return static_cast<std::size_t>(index);
}

std::size_t checkedCount(int count, char const* name) {
  if (count < 0) {
    throw std::out_of_range(name);
  }
  return static_cast<std::size_t>(count);
}

void checkRange(int index, int count, std::size_t size) {
  if (index < 0) {
    throw std::out_of_range("index");
  }
  if (checkedCount(count) + static_cast<std::size_t>(index) > size) {
    throw std::invalid_argument("invalid range");
  }
}

} // namespace zorBinding
