#pragma once

#include <zor/Controller1D.h>

namespace zor {

/** A lock: holds a degree of freedom at a position. With a compliance it is a spring with its rest there. */
class Lock1D : public Controller1D {
public:
  /** Creates a disabled lock at position zero. Constraints make their own. */
  Lock1D();

  /** Sets the position to hold.
   * \param position In m or rad, finite.
   */
  void setPosition(zor::Real position);
  /** \return Position held, in m or rad. */
  zor::Real getPosition() const;

  /** Makes the lock a spring and damper and turns it on: sets compliance and damping to what they stand for.
   * \param stiffness In N/m or N m/rad, larger than zero and finite.
   * \param damping In N s/m or N m s/rad, zero or more.
   * \throws std::invalid_argument When a value is not as said.
   */
  void setSpring(zor::Real stiffness, zor::Real damping);

protected:
  ~Lock1D() override;

private:
  Real m_position = 0;
};

} // namespace zor
