#pragma once

#include <zor/Controller1D.h>

namespace zor {

/** A motor: drives a degree of freedom at a speed with a force inside its force range. */
class Motor1D : public Controller1D {
public:
  /** Creates a disabled motor with speed zero. Constraints make their own. */
  Motor1D();

  /** Sets the wanted speed.
   * \param speed In m/s or rad/s, finite.
   */
  void setSpeed(zor::Real speed);
  /** \return Wanted speed in m/s or rad/s. */
  zor::Real getSpeed() const;

protected:
  ~Motor1D() override;

private:
  Real m_speed = 0;
};

} // namespace zor
