#include <zor/Motor1D.h>

#include "zor/Checks.h"

namespace zor {

Motor1D::Motor1D() = default;

Motor1D::~Motor1D() = default;

void Motor1D::setSpeed(Real speed) {
  checkFinite(speed, "Motor1D::setSpeed");
  m_speed = speed;
  touch();
}

Real Motor1D::getSpeed() const {
  return m_speed;
}

} // namespace zor
