#include <zor/Controller1D.h>

#include "bullet/ConstraintImpl.h"
#include "zor/Checks.h"

namespace zor {

Controller1D::Controller1D() = default;

Controller1D::~Controller1D() = default;

void Controller1D::touch() {
  if (m_constraint)
    m_constraint->wake();
}

void Controller1D::setEnable(bool enable) {
  m_enabled = enable;
  if (!enable)
    m_currentForce = 0;
  touch();
}

bool Controller1D::getEnable() const {
  return m_enabled;
}

void Controller1D::setForceRange(RangeReal const& range) {
  if (!range.contains(0))
    throw std::invalid_argument("Controller1D::setForceRange: the range does not contain zero");
  m_forceRange = range;
  touch();
}

RangeReal Controller1D::getForceRange() const {
  return m_forceRange;
}

void Controller1D::setCompliance(Real compliance) {
  checkNotNegative(compliance, "Controller1D::setCompliance");
  m_compliance = compliance;
  touch();
}

Real Controller1D::getCompliance() const {
  return m_compliance;
}

void Controller1D::setDamping(Real damping) {
  checkNotNegative(damping, "Controller1D::setDamping");
  m_damping = damping;
  touch();
}

Real Controller1D::getDamping() const {
  return m_damping;
}

Real Controller1D::getCurrentForce() const {
  return m_currentForce;
}

ForceStatistics Controller1D::getForceStatistics() const {
  return m_constraint ? m_constraint->statisticsOf(*this) : ForceStatistics();
}

} // namespace zor
