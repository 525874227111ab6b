#pragma once

#include <algorithm>
#include <cmath>

namespace zorOSG {

/** \param part - of a colour, 0 to 1; what is less, more or no number at all becomes a limit \return 0 to 255 */
inline unsigned char toByte(float part) {
  return part > 0.0f ? static_cast<unsigned char>(std::lround(std::min(part, 1.0f) * 255.0f)) : 0;
}

} // namespace zorOSG
