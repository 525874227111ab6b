#include "Limits.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace zorOSG {

zor::Vec2u checkedSize(char const* what, zor::UInt width, zor::UInt height, zor::UInt minimum) {
  constexpr zor::UInt maximum = 16384;
  if (std::min(width, height) < minimum || std::max(width, height) > maximum) {
    throw std::invalid_argument(std::string(what) + " must be " + std::to_string(minimum) + " to " +
                                std::to_string(maximum) + " pixels each way, not " + std::to_string(width) +
                                " x " + std::to_string(height));
  }
  return zor::Vec2u(static_cast<zor::UInt32>(width), static_cast<zor::UInt32>(height));
}

zor::Real checkedRate(char const* what, zor::Real fps) {
  if (!(fps > 0.0 && fps <= 10000.0)) {
    throw std::invalid_argument(std::string(what) + " must be more than 0 and at most 10000, not " +
                                std::to_string(fps));
  }
  return fps;
}

} // namespace zorOSG
