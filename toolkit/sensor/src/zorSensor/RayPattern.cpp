#include <zorSensor/RayPattern.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace zorSensor {

namespace {

zor::UInt const MOST_RAYS = zor::UInt(1) << 24;

void check(bool isRight, char const* what) {
  if (!isRight) {
    throw std::invalid_argument(std::string("RayPattern: ") + what);
  }
}

} // namespace

RayPattern::RayPattern(zor::Real horizontalAngle, zor::UInt32 numRaysPerLayer, zor::Real verticalAngle,
                       zor::UInt32 numLayers)
    : m_horizontalAngle(horizontalAngle), m_numRaysPerLayer(numRaysPerLayer), m_verticalAngle(verticalAngle),
      m_numLayers(numLayers) {
  check(horizontalAngle > 0 && horizontalAngle <= 2 * zor::PI,
        "the horizontal angle must be above 0, up to 2 pi");
  check(verticalAngle >= 0 && verticalAngle < zor::PI, "the vertical angle must be 0 to less than pi");
  check(numRaysPerLayer >= 2, "at least 2 rays are needed in a layer");
  check(numLayers >= 1, "at least 1 layer is needed");
  check(getNumRays() <= MOST_RAYS, "there may be 16777216 rays at most");
}

zor::Vec3 RayPattern::getDirection(zor::UInt index) const {
  if (index >= getNumRays()) {
    throw std::out_of_range("RayPattern: ray " + std::to_string(index) + " of " +
                            std::to_string(getNumRays()));
  }
  zor::UInt const layer = index / m_numRaysPerLayer;
  zor::UInt const ray = index % m_numRaysPerLayer;
  bool const isTurn = m_horizontalAngle >= 2 * zor::PI;
  zor::Real const step = m_horizontalAngle / (m_numRaysPerLayer - (isTurn ? 0 : 1));
  zor::Real const azimuth = static_cast<zor::Real>(ray) * step - m_horizontalAngle / 2;
  zor::Real const elevation =
      m_numLayers > 1 ? m_verticalAngle * (static_cast<zor::Real>(layer) / (m_numLayers - 1) - 0.5) : 0.0;
  return zor::Vec3(std::cos(elevation) * std::cos(azimuth), std::cos(elevation) * std::sin(azimuth),
                   std::sin(elevation));
}

zor::Vec3Vector RayPattern::getDirections() const {
  zor::Vec3Vector all;
  all.reserve(getNumRays());
  for (zor::UInt i = 0; i < getNumRays(); ++i) {
    all.push_back(getDirection(i));
  }
  return all;
}

} // namespace zorSensor
