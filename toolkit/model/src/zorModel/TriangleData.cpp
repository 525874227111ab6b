#include <zorModel/TriangleData.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace zorModel {

namespace {

zor::UInt checkIndex(zor::UInt index) {
  if (index > 2) {
    throw std::out_of_range("TriangleData: corner " + std::to_string(index) + " is not 0 to 2");
  }
  return index;
}

} // namespace

TriangleData::TriangleData(zor::Vec3 const& vertex0, zor::Vec3 const& vertex1, zor::Vec3 const& vertex2,
                           zor::Real pressure0, zor::Real pressure1, zor::Real pressure2) {
  setVertex(0, vertex0);
  setVertex(1, vertex1);
  setVertex(2, vertex2);
  setPressure(0, pressure0);
  setPressure(1, pressure1);
  setPressure(2, pressure2);
}

zor::Vec3 TriangleData::getVertex(zor::UInt index) const {
  return m_vertices[checkIndex(index)];
}

void TriangleData::setVertex(zor::UInt index, zor::Vec3 const& vertex) {
  if (!vertex.isFinite()) {
    throw std::invalid_argument("TriangleData: a corner is not finite");
  }
  m_vertices[checkIndex(index)] = vertex;
}

zor::Real TriangleData::getPressure(zor::UInt index) const {
  return m_pressures[checkIndex(index)];
}

void TriangleData::setPressure(zor::UInt index, zor::Real pressure) {
  if (!std::isfinite(pressure)) {
    throw std::invalid_argument("TriangleData: a pressure is not finite");
  }
  m_pressures[checkIndex(index)] = pressure;
}

zor::Vec3 TriangleData::getNormal() const {
  return ((m_vertices[1] - m_vertices[0]) ^ (m_vertices[2] - m_vertices[0])).normal();
}

zor::Real TriangleData::getArea() const {
  return ((m_vertices[1] - m_vertices[0]) ^ (m_vertices[2] - m_vertices[0])).length() / 2;
}

zor::Vec3 TriangleData::getForce() const {
  zor::Real const mean = (m_pressures[0] + m_pressures[1] + m_pressures[2]) / 3;
  return getNormal() * (-mean * getArea());
}

// The integral of two functions that vary evenly is their corners' sum of products plus the product of their
// sums, over 12, times the area.
zor::Vec3 TriangleData::getCenterOfPressure() const {
  zor::Real const sum = m_pressures[0] + m_pressures[1] + m_pressures[2];
  zor::Vec3 const vertices = m_vertices[0] + m_vertices[1] + m_vertices[2];
  if (sum == 0) {
    return vertices / 3;
  }
  zor::Vec3 weighted = vertices * sum;
  for (int i = 0; i < 3; ++i) {
    weighted += m_vertices[i] * m_pressures[i];
  }
  return weighted / (4 * sum);
}

} // namespace zorModel
