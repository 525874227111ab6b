#pragma once

#include <zor/RangeReal.h>
#include <zor/Referenced.h>
#include <zor/Types.h>

namespace zor {

class Constraint;
class ConstraintImpl;

/** What acts along one free degree of freedom of a constraint: a motor, a range or a lock.
 *
 * Units follow the degree of freedom: rad, rad/s and N m for a rotation; m, m/s and N for a translation.
 * Disabled when created.
 */
class Controller1D : public Referenced {
public:
  /** Turns the controller on or off. */
  void setEnable(bool enable);
  /** \return Whether the controller acts. */
  bool getEnable() const;

  /** Bounds the force that the controller may use.
   * \param range Lowest (most negative) and highest force; not NaN, lower not above upper, and zero inside.
   * \throws std::invalid_argument When the range is not as said.
   */
  void setForceRange(zor::RangeReal const& range);
  /** \return Lowest and highest force; unbounded by default. */
  zor::RangeReal getForceRange() const;

  /** Sets how much the controller yields.
   * \param compliance In m/N or rad/(N m), zero or more; zero is rigid.
   */
  void setCompliance(zor::Real compliance);
  /** \return Compliance in m/N or rad/(N m). */
  zor::Real getCompliance() const;

  /** Sets the time over which a deviation is worked off.
   * \param damping In seconds, zero or more.
   */
  void setDamping(zor::Real damping);
  /** \return Relaxation time in seconds. */
  zor::Real getDamping() const;

  /** \return Force that the controller used in the last step, positive along the degree of freedom. */
  zor::Real getCurrentForce() const;

protected:
  Controller1D();
  ~Controller1D() override;

  /** Wakes the constraint's bodies, so that a changed setting acts on sleeping ones. */
  void touch();

private:
  friend class Constraint;
  friend class ConstraintImpl;
  Constraint* m_constraint = nullptr;
  RangeReal m_forceRange;
  Real m_compliance;
  Real m_damping;
  Real m_currentForce = 0;
  bool m_enabled = false;
};

} // namespace zor
