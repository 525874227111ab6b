#include <zor/Lock1D.h>

#include "zor/Checks.h"

namespace zor {

Lock1D::Lock1D() = default;

Lock1D::~Lock1D() = default;

void Lock1D::setPosition(Real position) {
  checkFinite(position, "Lock1D::setPosition");
  m_position = position;
  touch();
}

Real Lock1D::getPosition() const {
  return m_position;
}

void Lock1D::setSpring(Real stiffness, Real damping) {
  checkPositive(stiffness, "Lock1D::setSpring");
  checkNotNegative(damping, "Lock1D::setSpring");
  setCompliance(1 / stiffness);
  setDamping(damping / stiffness);
  setEnable(true);
}

} // namespace zor
