#include <zorCollide/HeightField.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "bullet/Check.h"
#include "bullet/Conversions.h"
#include "bullet/HeightFieldImpl.h"
#include "bullet/HeightGrid.h"

namespace zorCollide {
namespace {

constexpr size_t maxResolution = 1 << 15;

void checkHeights(zor::RealVector const& heights, size_t count) {
  if (heights.size() != count)
    throw std::invalid_argument("HeightField: " + std::to_string(heights.size()) + " heights, but " +
                                std::to_string(count) + " are needed");
  for (size_t i = 0; i < count; ++i)
    if (!std::isfinite(heights[i]))
      throw std::invalid_argument("HeightField: height " + std::to_string(i) + " is not finite");
}

void checkResolution(char const* what, size_t resolution) {
  if (resolution < 2 || resolution > maxResolution)
    throw std::invalid_argument(std::string("HeightField: ") + what + " is " + std::to_string(resolution) +
                                ", but must be between 2 and " + std::to_string(maxResolution));
}

std::shared_ptr<zorBullet::HeightGrid> makeGrid(size_t numX, size_t numY, double sizeX, double sizeY,
                                                zor::RealVector const& heights) {
  checkResolution("resolution along x", numX);
  checkResolution("resolution along y", numY);
  auto grid = std::make_shared<zorBullet::HeightGrid>();
  grid->numX = numX;
  grid->numY = numY;
  grid->sizeX = zorBullet::checkPositive("HeightField", "size along x", sizeX);
  grid->sizeY = zorBullet::checkPositive("HeightField", "size along y", sizeY);
  if (!heights.empty())
    checkHeights(heights, numX * numY);
  grid->heights = heights.empty() ? zor::RealVector(numX * numY, 0.0) : heights;
  grid->updateRange();
  return grid;
}

size_t sampleIndex(zorBullet::HeightGrid const& grid, size_t x, size_t y) {
  if (x >= grid.numX || y >= grid.numY)
    throw std::out_of_range("HeightField: sample (" + std::to_string(x) + ", " + std::to_string(y) +
                            ") is outside the grid of " + std::to_string(grid.numX) + " x " +
                            std::to_string(grid.numY));
  return y * grid.numX + x;
}

} // namespace

HeightField::HeightField(zor::UInt resolutionX, zor::UInt resolutionY, zor::Real sizeX, zor::Real sizeY,
                         zor::RealVector const& heights)
    : HeightField(makeGrid(resolutionX, resolutionY, sizeX, sizeY, heights)) {}

HeightField::HeightField(std::shared_ptr<zorBullet::HeightGrid> grid)
    : Shape(HEIGHT_FIELD, std::make_unique<zorBullet::HeightFieldImpl>(grid)), m_grid(std::move(grid)) {}

HeightField::~HeightField() = default;

zor::UInt HeightField::getResolutionX() const {
  return m_grid->numX;
}

zor::UInt HeightField::getResolutionY() const {
  return m_grid->numY;
}

zor::Real HeightField::getSizeX() const {
  return m_grid->sizeX;
}

zor::Real HeightField::getSizeY() const {
  return m_grid->sizeY;
}

void HeightField::setHeights(zor::RealVector const& heights) {
  checkHeights(heights, m_grid->heights.size());
  std::copy(heights.begin(), heights.end(), m_grid->heights.begin()); // in place: engine shapes read it
  m_grid->updateRange();
  replaceImpl(std::make_unique<zorBullet::HeightFieldImpl>(m_grid));
}

zor::RealVector const& HeightField::getHeights() const {
  return m_grid->heights;
}

void HeightField::setHeight(zor::UInt xIndex, zor::UInt yIndex, zor::Real height) {
  size_t const index = sampleIndex(*m_grid, xIndex, yIndex);
  if (!std::isfinite(height))
    throw std::invalid_argument("HeightField: height is not finite");
  m_grid->heights[index] = height;
  m_grid->updateRange();
  replaceImpl(std::make_unique<zorBullet::HeightFieldImpl>(m_grid));
}

zor::Real HeightField::getHeight(zor::UInt xIndex, zor::UInt yIndex) const {
  return m_grid->heights[sampleIndex(*m_grid, xIndex, yIndex)];
}

zor::Vec3Vector HeightField::getVertices() const {
  zor::Vec3Vector vertices;
  vertices.reserve(m_grid->heights.size());
  for (size_t y = 0; y < m_grid->numY; ++y)
    for (size_t x = 0; x < m_grid->numX; ++x)
      vertices.push_back(zorBullet::fromBt(m_grid->point(x, y)));
  return vertices;
}

zor::UInt32Vector HeightField::getIndices() const {
  zor::UInt32Vector indices;
  indices.reserve(6 * (m_grid->numX - 1) * (m_grid->numY - 1));
  auto const row = static_cast<zor::UInt32>(m_grid->numX);
  for (zor::UInt32 y = 0; y + 1 < m_grid->numY; ++y)
    for (zor::UInt32 x = 0; x + 1 < m_grid->numX; ++x) {
      zor::UInt32 const low = y * row + x, high = low + row + 1;
      for (zor::UInt32 const index : {low, low + 1, high, low, high, low + row})
        indices.push_back(index);
    }
  return indices;
}

} // namespace zorCollide
