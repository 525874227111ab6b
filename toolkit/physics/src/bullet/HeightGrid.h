#pragma once

#include <algorithm>
#include <cstddef>

#include <LinearMath/btVector3.h>

#include <zor/Types.h>
#include <zor/Vector.h>

namespace zorBullet {

/** The samples of a height field. */
struct HeightGrid {
  size_t numX = 0;
  size_t numY = 0;
  double sizeX = 0.0;
  double sizeY = 0.0;
  zor::RealVector heights; // x runs fastest
  double lowest = 0.0;
  double highest = 0.0;

  double stepX() const { return sizeX / static_cast<double>(numX - 1); }
  double stepY() const { return sizeY / static_cast<double>(numY - 1); }

  btVector3 point(size_t x, size_t y) const {
    return btVector3(static_cast<double>(x) * stepX() - 0.5 * sizeX,
                     static_cast<double>(y) * stepY() - 0.5 * sizeY, heights[y * numX + x]);
  }

  void updateRange() {
    auto const range = std::minmax_element(heights.begin(), heights.end());
    lowest = *range.first;
    highest = *range.second;
  }
};

} // namespace zorBullet
