#include "urdf/MassSum.h"

namespace zorModel {

namespace {

zor::Matrix3x3 operator+(zor::Matrix3x3 const& a, zor::Matrix3x3 const& b) {
  return zor::Matrix3x3(a.getRow(0) + b.getRow(0), a.getRow(1) + b.getRow(1), a.getRow(2) + b.getRow(2));
}

/** Inertia of a point mass (parallel axes). */
zor::Matrix3x3 pointInertia(zor::Real mass, zor::Vec3 const& r) {
  zor::Matrix3x3 result;
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t col = 0; col < 3; ++col)
      result(row, col) = mass * ((row == col ? r.length2() : 0.0) - r[row] * r[col]);
  return result;
}

} // namespace

void MassSum::add(MassSum const& other) {
  zor::Real const total = mass + other.mass;
  if (!(total > 0))
    return;
  zor::Vec3 const joint = (centre * mass + other.centre * other.mass) / total;
  inertia = inertia + pointInertia(mass, centre - joint) + other.inertia +
            pointInertia(other.mass, other.centre - joint);
  centre = joint;
  mass = total;
}

MassSum MassSum::seenFrom(zor::AffineMatrix4x4 const& place) const {
  zor::Matrix3x3 const turn = place.getLinear();
  return {mass, place.transformPoint(centre), turn.transpose() * inertia * turn};
}

} // namespace zorModel
