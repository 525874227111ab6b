#include <zorTerrain/TerrainMaterial.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace zorTerrain {

namespace {

zor::Real check(bool isRight, char const* what, zor::Real value) {
  if (!isRight || !std::isfinite(value)) {
    throw std::invalid_argument(std::string("TerrainMaterial: ") + what + " can't be " +
                                std::to_string(value));
  }
  return value;
}

} // namespace

TerrainMaterial::TerrainMaterial(zor::String const& name) : zor::Object(name) {}

void TerrainMaterial::setDensity(zor::Real density) {
  m_density = check(density > 0, "density", density);
}

void TerrainMaterial::setFrictionAngle(zor::Real angle) {
  m_frictionAngle = check(angle >= 0 && angle < zor::PI / 2, "angle of friction", angle);
}

void TerrainMaterial::setCohesion(zor::Real cohesion) {
  m_cohesion = check(cohesion >= 0, "cohesion", cohesion);
}

void TerrainMaterial::setSwellFactor(zor::Real swellFactor) {
  m_swellFactor = check(swellFactor >= 1, "swell factor", swellFactor);
}

zor::Real TerrainMaterial::getShearStrength(zor::Real pressure) const {
  return std::max(0.0, m_cohesion + pressure * std::tan(m_frictionAngle));
}

} // namespace zorTerrain
