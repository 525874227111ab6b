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

} // namespace zor
