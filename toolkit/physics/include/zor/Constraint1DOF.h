#pragma once

#include <zor/Constraint.h>
#include <zor/Lock1D.h>
#include <zor/Motor1D.h>
#include <zor/Range1D.h>

namespace zor {

/** A constraint with one degree of freedom that can be driven, bounded and locked.
 *
 * The angle or position is that of body 0 relative to body 1 (or the world), positive about or along the
 * joint's axis.
 */
class Constraint1DOF : public Constraint {
public:
  /** \return Angle in rad (not wrapped at full turns) or position in m. */
  zor::Real getAngle() const;
  /** \return The same as getAngle. */
  zor::Real getPosition() const;
  /** \return Speed in rad/s or m/s. */
  zor::Real getSpeed() const;

  /** \return The motor, owned by the constraint. */
  zor::Motor1D* getMotor1D() const;
  /** \return The range, owned by the constraint. */
  zor::Range1D* getRange1D() const;
  /** \return The lock, owned by the constraint. */
  zor::Lock1D* getLock1D() const;

  using Constraint::getCurrentForce;
  /** \return Sum of the forces of motor, range and lock in the last step, in N or N m. */
  zor::Real getCurrentForce() const;

protected:
  explicit Constraint1DOF(std::unique_ptr<zorBullet::ConstraintImpl> impl);
  ~Constraint1DOF() override;
};

} // namespace zor
