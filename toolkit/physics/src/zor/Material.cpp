#include <zor/Material.h>

#include "bullet/Check.h"

namespace zor {

Material::Material(String const& name, Real density, Real friction) : Object(name) {
  setDensity(density);
  setFriction(friction);
}

void Material::setDensity(Real density) {
  m_density = zorBullet::checkPositive("Material", "density", density);
}

void Material::setFriction(Real friction) {
  m_friction = zorBullet::checkNotNegative("Material", "friction", friction);
}

void Material::setRestitution(Real restitution) {
  m_restitution = zorBullet::checkFraction("Material", "restitution", restitution);
}

void Material::setYoungsModulus(Real youngsModulus) {
  m_youngsModulus = zorBullet::checkPositive("Material", "Young's modulus", youngsModulus);
}

} // namespace zor
