#include <zorOSG/ScalarColorMap.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "ColorTables.h"
#include "scene/Checks.h"

namespace zorOSG {

namespace {

std::vector<osg::Vec4> presetColors(ScalarColorMap::ColorRangePreset preset) {
  std::vector<osg::Vec4> colors = colorTable(preset);
  if (colors.empty())
    throw std::invalid_argument("ScalarColorMap: no such preset: " + std::to_string(preset));
  return colors;
}

std::vector<osg::Vec4> checkedColors(zorRender::ColorVector const& given) {
  if (given.empty())
    throw std::invalid_argument("ScalarColorMap: at least one colour is needed");
  std::vector<osg::Vec4> colors;
  for (zorRender::Color const& color : given) {
    requireFinite("ScalarColorMap", "colour", color.asVec4f());
    colors.emplace_back(color.r(), color.g(), color.b(), color.a());
  }
  return colors;
}

} // namespace

ScalarColorMap::ScalarColorMap() : ScalarColorMap(VIRIDIS, 0, 1) {}

ScalarColorMap::ScalarColorMap(zorRender::ColorVector const& colorVector, zor::Real minScalar,
                               zor::Real maxScalar) {
  set(checkedColors(colorVector), minScalar, maxScalar);
}

ScalarColorMap::ScalarColorMap(ColorRangePreset preset, zor::Real minScalar, zor::Real maxScalar) {
  set(presetColors(preset), minScalar, maxScalar);
}

void ScalarColorMap::setColorsFromPreset(ColorRangePreset colorRangePreset) {
  set(presetColors(colorRangePreset), m_min, m_max);
}

void ScalarColorMap::setColors(zorRender::ColorVector const& colorVector) {
  set(checkedColors(colorVector), m_min, m_max);
}

zorRender::ColorVector ScalarColorMap::getColors() const {
  zorRender::ColorVector colors;
  for (osg::Vec4 const& color : m_range->getColors())
    colors.push_back(zorRender::Color(color.r(), color.g(), color.b(), color.a()));
  return colors;
}

/** Where a number lies in the interval, 0 to 1. An interval without length has all numbers from it on at 1.
 */
double ScalarColorMap::partOf(zor::Real scalar) const {
  if (std::isnan(scalar))
    throw std::invalid_argument("ScalarColorMap: NaN has no colour");
  if (scalar >= m_max)
    return 1;
  if (scalar <= m_min)
    return 0;
  double const length = m_max - m_min;
  if (std::isfinite(length))
    return std::clamp((scalar - m_min) / length, 0.0, 1.0);
  return std::clamp((scalar / 2 - m_min / 2) / (m_max / 2 - m_min / 2), 0.0, 1.0); // halves don't overflow
}

osg::Vec4 ScalarColorMap::getColorOSG(zor::Real scalar, bool modifyAlpha) const {
  std::vector<osg::Vec4> const& colors = m_range->getColors();
  double const part = partOf(scalar);
  double const place = part * static_cast<double>(colors.size() - 1);
  auto const below = static_cast<size_t>(place);
  size_t const above = std::min(below + 1, colors.size() - 1);
  osg::Vec4 color = colors[below] +
                    (colors[above] - colors[below]) * static_cast<float>(place - static_cast<double>(below));
  if (modifyAlpha)
    color.a() *= static_cast<float>(part);
  return color;
}

zor::Vec4f ScalarColorMap::getColor(zor::Real scalar, bool modifyAlpha) const {
  osg::Vec4 const color = getColorOSG(scalar, modifyAlpha);
  return {color.r(), color.g(), color.b(), color.a()};
}

void ScalarColorMap::setMinScalar(zor::Real minScalar) {
  if (minScalar <= m_max && std::isfinite(minScalar))
    setScalarInterval(minScalar, m_max);
}

void ScalarColorMap::setMaxScalar(zor::Real maxScalar) {
  if (maxScalar >= m_min && std::isfinite(maxScalar))
    setScalarInterval(m_min, maxScalar);
}

void ScalarColorMap::setScalarInterval(zor::Real minScalar, zor::Real maxScalar) {
  set(m_range->getColors(), minScalar, maxScalar);
}

void ScalarColorMap::set(std::vector<osg::Vec4> const& colors, zor::Real min, zor::Real max) {
  requireFinite("ScalarColorMap", "minScalar", min);
  requireFinite("ScalarColorMap", "maxScalar", max);
  m_min = std::min(min, max);
  m_max = std::max(min, max);
  m_range = new osgSim::ColorRange(static_cast<float>(m_min), static_cast<float>(m_max), colors);
}

} // namespace zorOSG
