#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/Matrix3x3.h>
#include <zor/Types.h>
#include <zor/Vec3.h>

namespace zorModel {

/** Mass, centre of mass and inertia of bodies that are taken together, in one frame. */
struct MassSum {
  zor::Real mass = 0;
  zor::Vec3 centre;
  zor::Matrix3x3 inertia = zor::Matrix3x3() * 0.0; ///< about the centre of mass

  void add(MassSum const& other);

  /** The same, seen from another frame. \param place - this frame in the other one; must not scale */
  MassSum seenFrom(zor::AffineMatrix4x4 const& place) const;

  bool hasInertia() const { return !(inertia == zor::Matrix3x3() * 0.0); }
};

} // namespace zorModel
