#include "RayPick.h"

#include <zor/RigidBody.h>

#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

bool isDynamic(zorCollide::Geometry const& geometry) {
  zor::RigidBody const* const body = geometry.getRigidBody();
  return body && body->getMotionControl() == zor::RigidBody::DYNAMICS;
}

} // namespace

zorCollide::RayHit nearestHit(char const* where, zorCollide::Space const& space, zor::Vec3 const& start,
                              zor::Vec3 const& end, bool onlyDynamics) {
  zor::Vec3 const ray = end - start;
  if (!start.isFinite() || !end.isFinite() || !(ray.length() > 0))
    throw std::invalid_argument(
        std::string(where) + ": the ray's ends must be finite and different, or the screen position finite");
  if (!onlyDynamics)
    return space.castRay(start, ray, ray.length());
  for (auto const& hit : space.castRayAll(start, ray, ray.length()))
    if (isDynamic(*hit.getGeometry()))
      return hit;
  return {};
}

zorCollide::GeometryContact toContact(zorCollide::RayHit const& hit) {
  if (!hit.hasHit())
    return {};
  zorCollide::GeometryContact contact(hit.getGeometry(), nullptr);
  contact.addPoint(zorCollide::ContactPoint(hit.getPoint(), hit.getNormal(), 0));
  return contact;
}

} // namespace zorOSG
