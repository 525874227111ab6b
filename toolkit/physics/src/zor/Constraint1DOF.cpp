#include <zor/Constraint1DOF.h>

#include "bullet/ConstraintImpl.h"

namespace zor {

Constraint1DOF::Constraint1DOF(std::unique_ptr<zorBullet::ConstraintImpl> impl)
    : Constraint(std::move(impl)) {}

Constraint1DOF::~Constraint1DOF() = default;

Real Constraint1DOF::getAngle() const {
  return m_impl->position(0);
}

Real Constraint1DOF::getPosition() const {
  return m_impl->position(0);
}

Real Constraint1DOF::getSpeed() const {
  return m_impl->speed(0);
}

Motor1D* Constraint1DOF::getMotor1D() const {
  return m_impl->freedom(0).motor.get();
}

Range1D* Constraint1DOF::getRange1D() const {
  return m_impl->freedom(0).range.get();
}

Lock1D* Constraint1DOF::getLock1D() const {
  return m_impl->freedom(0).lock.get();
}

Real Constraint1DOF::getCurrentForce() const {
  return getMotor1D()->getCurrentForce() + getRange1D()->getCurrentForce() + getLock1D()->getCurrentForce();
}

} // namespace zor
