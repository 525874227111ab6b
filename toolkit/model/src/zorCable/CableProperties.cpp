#include <zorCable/CableProperties.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace zorCable {

namespace {

std::size_t checkDirection(CableProperties::Direction direction) {
  if (direction < CableProperties::BEND || direction > CableProperties::TWIST) {
    throw std::invalid_argument("CableProperties: direction " + std::to_string(static_cast<int>(direction)) +
                                " is not BEND, STRETCH or TWIST");
  }
  return static_cast<std::size_t>(direction);
}

zor::Real checkPositive(char const* what, zor::Real value) {
  if (!(value > 0)) {
    throw std::invalid_argument(std::string("CableProperties: ") + what + " must be positive, is " +
                                std::to_string(value));
  }
  return value;
}

} // namespace

CableProperties::Resistance::Resistance() : yieldPoint(std::numeric_limits<zor::Real>::infinity()) {}

void CableProperties::setYoungsModulus(Direction direction, zor::Real youngsModulus) {
  if (std::isinf(youngsModulus)) {
    throw std::invalid_argument("CableProperties: youngsModulus must be finite");
  }
  m_resistances[checkDirection(direction)].youngsModulus = checkPositive("youngsModulus", youngsModulus);
}

zor::Real CableProperties::getYoungsModulus(Direction direction) const {
  return m_resistances[checkDirection(direction)].youngsModulus;
}

void CableProperties::setYieldPoint(Direction direction, zor::Real yieldPoint) {
  m_resistances[checkDirection(direction)].yieldPoint = checkPositive("yieldPoint", yieldPoint);
}

zor::Real CableProperties::getYieldPoint(Direction direction) const {
  return m_resistances[checkDirection(direction)].yieldPoint;
}

} // namespace zorCable
