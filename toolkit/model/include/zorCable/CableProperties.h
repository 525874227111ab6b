#pragma once

#include <zor/Types.h>

namespace zorCable {

/** How a cable resists bending, stretching and twisting. */
class CableProperties {
public:
  /** A way in which a cable deforms. */
  enum Direction : int {
    BEND = 0,    ///< Across the cable.
    STRETCH = 1, ///< Along the cable.
    TWIST = 2    ///< About the cable.
  };

  /** Stiff in all directions (10 GPa), without a limit of plastic deformation. */
  CableProperties() = default;

  /**
   * \param direction - kind of deformation, else std::invalid_argument
   * \param youngsModulus - stiffness (Pa), positive, else std::invalid_argument
   */
  void setYoungsModulus(Direction direction, zor::Real youngsModulus);
  /** \param direction - kind of deformation, else std::invalid_argument \return stiffness (Pa) */
  zor::Real getYoungsModulus(Direction direction) const;

  /**
   * \param direction - kind of deformation, else std::invalid_argument
   * \param yieldPoint - stress from which on the deformation stays (Pa), positive, infinite for never, else
   * std::invalid_argument
   */
  void setYieldPoint(Direction direction, zor::Real yieldPoint);
  /** \param direction - kind of deformation, else std::invalid_argument \return stress from which on it stays
   * (Pa) */
  zor::Real getYieldPoint(Direction direction) const;

  bool operator==(CableProperties const& other) const = default;

private:
  struct Resistance {
    zor::Real youngsModulus = 1.0e10;
    zor::Real yieldPoint;
    Resistance();
    bool operator==(Resistance const& other) const = default;
  };
  Resistance m_resistances[3];
};

} // namespace zorCable
