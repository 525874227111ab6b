#pragma once

#include <LinearMath/btMatrix3x3.h>
#include <LinearMath/btTransform.h>

namespace zorBullet {

/** Mass, centre and inertia tensor about the centre, along the axes of some frame. */
struct MassData {
  double mass = 0.0;
  btVector3 center{0, 0, 0};
  btMatrix3x3 inertia{0, 0, 0, 0, 0, 0, 0, 0, 0};

  MassData scaled(double factor) const;                 // other density
  MassData transformed(btTransform const& frame) const; // seen from the frame's parent
  void add(MassData const& other);                      // both in the same frame
};

} // namespace zorBullet
