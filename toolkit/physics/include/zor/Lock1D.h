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

protected:
  ~Lock1D() override;

private:
  Real m_position = 0;
};

} // namespace zor
