#include <zor/MassProperties.h>

#include "bullet/BodyImpl.h"
#include "zor/Checks.h"

namespace zor {

void MassProperties::setAutomatic(UInt32 bits, bool automatic) {
  m_autoMask = automatic ? m_autoMask | bits : m_autoMask & ~bits;
}

void MassProperties::setMass(Real mass, bool autoGenerate) {
  checkPositive(mass, "MassProperties::setMass");
  if (m_autoMask & (INERTIA_DIAGONAL | INERTIA_OFFDIAGONAL))
    for (size_t row = 0; row < 3; ++row)
      for (size_t column = 0; column < 3; ++column)
        if (m_autoMask & (row == column ? INERTIA_DIAGONAL : INERTIA_OFFDIAGONAL))
          m_inertia(row, column) *= mass / m_mass;
  m_mass = mass;
  setAutomatic(MASS, autoGenerate);
  m_body.applyMass();
}

Real MassProperties::getMass() const {
  return m_mass;
}

Real MassProperties::getInvMass() const {
  return 1 / m_mass;
}

void MassProperties::setInertiaTensor(Vec3 const& diagonal, bool autoGenerate) {
  for (size_t i = 0; i < 3; ++i)
    checkPositive(diagonal[i], "MassProperties::setInertiaTensor");
  setInertiaTensor(Matrix3x3(Vec3(diagonal.x(), 0, 0), Vec3(0, diagonal.y(), 0), Vec3(0, 0, diagonal.z())),
                   autoGenerate);
}

void MassProperties::setInertiaTensor(Matrix3x3 const& inertia, bool autoGenerate) {
  Real const scale = inertia(0, 0) + inertia(1, 1) + inertia(2, 2);
  Real const minor = inertia(0, 0) * inertia(1, 1) - inertia(0, 1) * inertia(1, 0);
  bool const good = std::isfinite(scale) && inertia.equals(inertia.transpose(), 1e-9 * scale) &&
                    inertia(0, 0) > 0 && minor > 0 && inertia.determinant() > 0;
  if (!good)
    throw std::invalid_argument(
        "MassProperties::setInertiaTensor: the tensor must be symmetric and positive definite");
  m_inertia = inertia;
  setAutomatic(INERTIA_DIAGONAL | INERTIA_OFFDIAGONAL, autoGenerate);
  m_body.applyMass();
}

Matrix3x3 MassProperties::getInertiaTensor() const {
  return m_inertia;
}

Vec3 MassProperties::getPrincipalInertiae() const {
  return Vec3(m_inertia(0, 0), m_inertia(1, 1), m_inertia(2, 2));
}

void MassProperties::setCmLocalTranslate(Vec3 const& offset, bool autoGenerate) {
  checkFinite(offset, "MassProperties::setCmLocalTranslate");
  m_centre = offset;
  setAutomatic(CM_OFFSET, autoGenerate);
  m_body.applyMass();
}

Vec3 MassProperties::getCmLocalTranslate() const {
  return m_centre;
}

void MassProperties::setAutoGenerateMask(UInt32 mask) {
  if (mask & ~UInt32(AUTO_GENERATE_ALL))
    throw std::invalid_argument("MassProperties::setAutoGenerateMask: unknown bits in " +
                                std::to_string(mask));
  m_autoMask = mask;
  m_body.computeMass();
}

UInt32 MassProperties::getAutoGenerateMask() const {
  return m_autoMask;
}

void MassProperties::setAutoGenerate(bool enable) {
  setAutoGenerateMask(enable ? AUTO_GENERATE_ALL : 0);
}

} // namespace zor
