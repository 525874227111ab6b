#include <zor/Material.h>

#include "bullet/Check.h"
#include "bullet/Surfaces.h"

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
  zorBullet::surfacesChanged();
}

void Material::setRestitution(Real restitution) {
  m_restitution = zorBullet::checkFraction("Material", "restitution", restitution);
  zorBullet::surfacesChanged();
}

void Material::setRollingFriction(Real rollingFriction) {
  m_rollingFriction = zorBullet::checkNotNegative("Material", "rolling friction", rollingFriction);
  zorBullet::surfacesChanged();
}

void Material::setSpinningFriction(Real spinningFriction) {
  m_spinningFriction = zorBullet::checkNotNegative("Material", "spinning friction", spinningFriction);
  zorBullet::surfacesChanged();
}

void Material::setYoungsModulus(Real youngsModulus) {
  m_youngsModulus = zorBullet::checkPositive("Material", "Young's modulus", youngsModulus);
}

} // namespace zor
