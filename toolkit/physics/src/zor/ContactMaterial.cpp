#include <zor/ContactMaterial.h>

#include <algorithm>
#include <cmath>

#include "bullet/Check.h"

namespace zor {

using zorBullet::checkNotNull;

ContactMaterial::ContactMaterial(Material* material1, Material* material2)
    : m_material1(&checkNotNull("ContactMaterial", "first material", material1)),
      m_material2(&checkNotNull("ContactMaterial", "second material", material2)),
      m_friction(combineFriction(*material1, *material2)),
      m_restitution(combineRestitution(*material1, *material2)) {}

void ContactMaterial::setFriction(Real friction) {
  m_friction = zorBullet::checkNotNegative("ContactMaterial", "friction", friction);
}

void ContactMaterial::setRestitution(Real restitution) {
  m_restitution = zorBullet::checkFraction("ContactMaterial", "restitution", restitution);
}

Real ContactMaterial::combineFriction(Material const& material1, Material const& material2) {
  return std::sqrt(material1.getFriction() * material2.getFriction());
}

Real ContactMaterial::combineRestitution(Material const& material1, Material const& material2) {
  return std::max(material1.getRestitution(), material2.getRestitution());
}

} // namespace zor
