#include <zor/ContactMaterial.h>

#include <algorithm>
#include <cmath>

#include "bullet/Check.h"
#include "bullet/Surfaces.h"

namespace zor {

using zorBullet::checkNotNull;

ContactMaterial::ContactMaterial(Material* material1, Material* material2)
    : m_material1(&checkNotNull("ContactMaterial", "first material", material1)),
      m_material2(&checkNotNull("ContactMaterial", "second material", material2)),
      m_friction(combineFriction(*material1, *material2)),
      m_restitution(combineRestitution(*material1, *material2)),
      m_rollingFriction(combineRollingFriction(*material1, *material2)),
      m_spinningFriction(combineSpinningFriction(*material1, *material2)) {}

void ContactMaterial::setFriction(Real friction) {
  m_friction = zorBullet::checkNotNegative("ContactMaterial", "friction", friction);
  zorBullet::surfacesChanged();
}

void ContactMaterial::setRestitution(Real restitution) {
  m_restitution = zorBullet::checkFraction("ContactMaterial", "restitution", restitution);
  zorBullet::surfacesChanged();
}

void ContactMaterial::setRollingFriction(Real rollingFriction) {
  m_rollingFriction = zorBullet::checkNotNegative("ContactMaterial", "rolling friction", rollingFriction);
  zorBullet::surfacesChanged();
}

void ContactMaterial::setSpinningFriction(Real spinningFriction) {
  m_spinningFriction = zorBullet::checkNotNegative("ContactMaterial", "spinning friction", spinningFriction);
  zorBullet::surfacesChanged();
}

void ContactMaterial::setStiffness(Real stiffness) {
  bool const rigid = stiffness == std::numeric_limits<Real>::infinity();
  m_stiffness = rigid ? stiffness : zorBullet::checkPositive("ContactMaterial", "stiffness", stiffness);
  zorBullet::surfacesChanged();
}

void ContactMaterial::setDamping(Real damping) {
  m_damping = zorBullet::checkNotNegative("ContactMaterial", "damping", damping);
  zorBullet::surfacesChanged();
}

Real ContactMaterial::combineFriction(Material const& material1, Material const& material2) {
  return std::sqrt(material1.getFriction() * material2.getFriction());
}

Real ContactMaterial::combineRestitution(Material const& material1, Material const& material2) {
  return std::max(material1.getRestitution(), material2.getRestitution());
}

Real ContactMaterial::combineRollingFriction(Material const& material1, Material const& material2) {
  return material1.getRollingFriction() + material2.getRollingFriction();
}

Real ContactMaterial::combineSpinningFriction(Material const& material1, Material const& material2) {
  return material1.getSpinningFriction() + material2.getSpinningFriction();
}

} // namespace zor
