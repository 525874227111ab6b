#pragma once

#include <zor/ForceStatistics.h>
#include <zor/RangeReal.h>
#include <zor/Referenced.h>
#include <zor/Types.h>

#ifndef SWIG
namespace zorBullet {
class ConstraintImpl;
} // namespace zorBullet
#endif

namespace zorStream {
struct StateAccess;
} // namespace zorStream

namespace zor {

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
   * \param compliance In m/N or rad/(N m) - for a motor in (m/s)/N or (rad/s)/(N m) -, zero or more; zero is
   *        rigid.
   */
  void setCompliance(zor::Real compliance);
  /** \return Compliance in m/N or rad/(N m). */
  zor::Real getCompliance() const;

  /** Sets the time over which a deviation is worked off; a motor has none.
   * \param damping In seconds, zero or more.
   */
  void setDamping(zor::Real damping);
  /** \return Relaxation time in seconds. */
  zor::Real getDamping() const;

  /** \return Force that the controller used in the last step, positive along the degree of freedom. */
  zor::Real getCurrentForce() const;

  /** \return The controller's force in all steps since the statistics of its constraint were turned on
   *         (zor::Constraint::setEnableForceStatistics), with its sign; steps in which the controller is off
   *         count as zero. Without any values when they are off. */
  zor::ForceStatistics getForceStatistics() const;

protected:
  Controller1D();
  ~Controller1D() override;

  /** Wakes the constraint's bodies, so that a changed setting acts on sleeping ones. */
  void touch();

private:
  friend class zorBullet::ConstraintImpl;
  friend struct zorStream::StateAccess;
  zorBullet::ConstraintImpl* m_constraint = nullptr; // null when the constraint is gone
  RangeReal m_forceRange;
  Real m_compliance = 0;
  Real m_damping = 1.0 / 30.0;
  Real m_currentForce = 0;
  bool m_enabled = false;
};

} // namespace zor
