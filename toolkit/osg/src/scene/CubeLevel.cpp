#include "CubeLevel.h"

#include <algorithm>
#include <cmath>

namespace zorOSG {

namespace {

struct CubePlace {
  int face;
  float s, t;
};

CubePlace placeOf(osg::Vec3f const& way) {
  float const x = std::abs(way.x()), y = std::abs(way.y()), z = std::abs(way.z());
  auto const on = [](int face, float side, float down, float depth) {
    return CubePlace{face, 0.5f * (side / depth + 1.0f), 0.5f * (down / depth + 1.0f)};
  };
  if (x >= y && x >= z)
    return way.x() > 0 ? on(0, -way.z(), -way.y(), x) : on(1, way.z(), -way.y(), x);
  if (y >= z)
    return way.y() > 0 ? on(2, way.x(), way.z(), y) : on(3, way.x(), -way.z(), y);
  return way.z() > 0 ? on(4, way.x(), -way.y(), z) : on(5, -way.x(), -way.y(), z);
}

} // namespace

CubeLevel::CubeLevel(int side)
    : m_side(side), m_colors(6 * static_cast<size_t>(side) * static_cast<size_t>(side)) {}

osg::Vec3f CubeLevel::directionOf(int face, float s, float t) {
  float const u = 2.0f * s - 1.0f, v = 2.0f * t - 1.0f;
  switch (face) {
  case 0:
    return {1.0f, -v, -u};
  case 1:
    return {-1.0f, -v, u};
  case 2:
    return {u, 1.0f, v};
  case 3:
    return {u, -1.0f, -v};
  case 4:
    return {u, -v, 1.0f};
  default:
    return {-u, -v, -1.0f};
  }
}

osg::Vec3f CubeLevel::directionOf(int face, int column, int row) const {
  auto const size = static_cast<float>(m_side);
  return directionOf(face, (static_cast<float>(column) + 0.5f) / size,
                     (static_cast<float>(row) + 0.5f) / size);
}

osg::Vec3f const& CubeLevel::around(int face, int column, int row) const {
  if (column >= 0 && row >= 0 && column < m_side && row < m_side)
    return at(face, column, row);
  CubePlace const place = placeOf(directionOf(face, column, row));
  auto const whole = [this](float part) {
    return std::clamp(static_cast<int>(part * static_cast<float>(m_side)), 0, m_side - 1);
  };
  return at(place.face, whole(place.s), whole(place.t));
}

osg::Vec3f CubeLevel::look(osg::Vec3f const& direction) const {
  CubePlace const place = placeOf(direction);
  float const x = place.s * static_cast<float>(m_side) - 0.5f,
              y = place.t * static_cast<float>(m_side) - 0.5f;
  float const left = std::floor(x), upper = std::floor(y);
  float const right = x - left, lower = y - upper;
  int const column = static_cast<int>(left), row = static_cast<int>(upper);
  auto const mean = [&](osg::Vec3f const& a, osg::Vec3f const& b, osg::Vec3f const& c, osg::Vec3f const& d) {
    return (a * (1.0f - right) + b * right) * (1.0f - lower) + (c * (1.0f - right) + d * right) * lower;
  };
  if (column >= 0 && row >= 0 && column + 1 < m_side && row + 1 < m_side) { // as most are
    osg::Vec3f const* const colors = &m_colors[index(place.face, column, row)];
    return mean(colors[0], colors[1], colors[m_side], colors[m_side + 1]);
  }
  return mean(around(place.face, column, row), around(place.face, column + 1, row),
              around(place.face, column, row + 1), around(place.face, column + 1, row + 1));
}

CubeLevel CubeLevel::halved() const {
  CubeLevel half(std::max(m_side / 2, 1));
  for (int face = 0; face < 6; ++face)
    for (int row = 0; row < half.m_side; ++row)
      for (int column = 0; column < half.m_side; ++column) {
        int const x = std::min(2 * column + 1, m_side - 1), y = std::min(2 * row + 1, m_side - 1);
        half.at(face, column, row) = (at(face, 2 * column, 2 * row) + at(face, x, 2 * row) +
                                      at(face, 2 * column, y) + at(face, x, y)) *
                                     0.25f;
      }
  return half;
}

CubeLevel CubeLevel::resized(int side) const {
  CubeLevel result(side);
  for (int face = 0; face < 6; ++face)
    for (int row = 0; row < side; ++row)
      for (int column = 0; column < side; ++column)
        result.at(face, column, row) = look(result.directionOf(face, column, row));
  return result;
}

} // namespace zorOSG
