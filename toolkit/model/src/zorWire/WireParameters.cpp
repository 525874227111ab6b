#include <zorWire/WireParameters.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace zorWire {

namespace {

zor::Real checkPositive(char const* what, zor::Real value) {
  if (!(value > 0) || !std::isfinite(value)) {
    throw std::invalid_argument(std::string("WireParameters: ") + what + " must be positive and finite, is " +
                                std::to_string(value));
  }
  return value;
}

} // namespace

WireParameters::WireParameters(zor::Real radius, zor::Real youngsModulus, zor::Real density,
                               zor::Real resolution)
    : m_radius(checkPositive("radius", radius)),
      m_youngsModulus(checkPositive("youngsModulus", youngsModulus)),
      m_density(checkPositive("density", density)), m_resolution(checkPositive("resolution", resolution)) {}

zor::Real WireParameters::getArea() const {
  return zor::PI * m_radius * m_radius;
}

zor::Real WireParameters::getMassPerLength() const {
  return m_density * getArea();
}

zor::Real WireParameters::getStretchStiffness() const {
  return m_youngsModulus * getArea();
}

zor::Real WireParameters::getBendStiffness() const {
  return m_youngsModulus * getArea() * m_radius * m_radius / 4;
}

} // namespace zorWire
