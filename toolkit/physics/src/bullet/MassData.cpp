#include "bullet/MassData.h"

namespace zorBullet {
namespace {

// Inertia of a point mass at an offset (parallel axes).
btMatrix3x3 pointInertia(double mass, btVector3 const& r) {
  double const r2 = r.length2();
  return btMatrix3x3(mass * (r2 - r.x() * r.x()), -mass * r.x() * r.y(), -mass * r.x() * r.z(),
                     -mass * r.y() * r.x(), mass * (r2 - r.y() * r.y()), -mass * r.y() * r.z(),
                     -mass * r.z() * r.x(), -mass * r.z() * r.y(), mass * (r2 - r.z() * r.z()));
}

} // namespace

MassData MassData::scaled(double factor) const {
  return MassData{mass * factor, center, inertia * factor};
}

MassData MassData::transformed(btTransform const& frame) const {
  return MassData{mass, frame(center), frame.getBasis() * inertia * frame.getBasis().transpose()};
}

void MassData::add(MassData const& other) {
  double const total = mass + other.mass;
  if (total <= 0.0)
    return;
  btVector3 const joint = (center * mass + other.center * other.mass) / total;
  inertia +=
      pointInertia(mass, center - joint) + other.inertia + pointInertia(other.mass, other.center - joint);
  center = joint;
  mass = total;
}

} // namespace zorBullet
