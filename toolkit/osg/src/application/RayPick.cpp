#include "RayPick.h"

#include "scene/ClipNumbers.h"
#include "scene/DrawnParts.h"

#include <zor/RigidBody.h>

#include <set>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

using zorCollide::RayHit;

bool isDynamic(zorCollide::Geometry const& geometry) {
  zor::RigidBody const* const body = geometry.getRigidBody();
  return body && body->getMotionControl() == zor::RigidBody::DYNAMICS;
}

/** A ray through a space of which clip planes hide parts. */
class ClippedRay {
public:
  ClippedRay(zorCollide::Space const& space, zor::Vec3 const& start, zor::Vec3 const& end, bool onlyDynamics,
             osg::Camera const* camera)
      : m_space(space), m_start(start), m_end(end), m_onlyDynamics(onlyDynamics),
        m_top(camera && camera->getNumChildren() > 0 ? camera : nullptr) {}

  RayHit nearest() {
    zorCollide::RayHitVector const there = cast(m_start, m_end);
    for (RayHit const& hit : there)
      examine(*hit.getGeometry(), &hit);
    // From the far end also what the ray starts in is met, which a plane may have opened.
    for (RayHit const& hit : cast(m_end, m_start))
      examine(*hit.getGeometry(), nullptr);
    return m_nearest;
  }

private:
  zorCollide::RayHitVector cast(zor::Vec3 const& from, zor::Vec3 const& to) const {
    zor::Vec3 const ray = to - from;
    double const length = ray.length();
    return length > 0.0 ? m_space.castRayAll(from, ray, length) : zorCollide::RayHitVector();
  }

  /** \param hit - the nearest one of the geometry, as if nothing were cut; null if it was not met this way */
  void examine(zorCollide::Geometry const& geometry, RayHit const* hit) {
    if ((m_onlyDynamics && !isDynamic(geometry)) || !m_examined.insert(&geometry).second)
      return;
    for (RayPart const& part : drawnParts(geometry, m_start, m_end, m_top)) {
      if (part == RayPart{}) {
        if (hit)
          take(*hit);
        continue;
      }
      zor::Vec3 const from = at(part.begin), to = at(part.end);
      for (RayHit const& front : cast(from, to))
        if (front.getGeometry() == &geometry)
          take(front);
      for (RayHit const& back : cast(to, from)) // the inside of a solid that was cut open
        if (back.getGeometry() == &geometry)
          take({back.getGeometry(), back.getShape(), back.getTriangleIndex(), back.getPoint(),
                -back.getNormal(), 0.0});
    }
  }

  zor::Vec3 at(double share) const { return m_start + (m_end - m_start) * share; }

  void take(RayHit const& hit) {
    double const distance = hit.getPoint().distance(m_start);
    if (!m_nearest.hasHit() || distance < m_nearest.getDistance())
      m_nearest = {hit.getGeometry(), hit.getShape(),  hit.getTriangleIndex(),
                   hit.getPoint(),    hit.getNormal(), distance};
  }

  zorCollide::Space const& m_space;
  zor::Vec3 m_start, m_end;
  bool m_onlyDynamics;
  osg::Node const* m_top;
  std::set<zorCollide::Geometry const*> m_examined;
  RayHit m_nearest;
};

} // namespace

zorCollide::RayHit nearestHit(char const* where, zorCollide::Space const& space, zor::Vec3 const& start,
                              zor::Vec3 const& end, bool onlyDynamics, osg::Camera const* camera) {
  zor::Vec3 const ray = end - start;
  if (!start.isFinite() || !end.isFinite() || !(ray.length() > 0))
    throw std::invalid_argument(
        std::string(where) + ": the ray's ends must be finite and different, or the screen position finite");
  if (ClipNumbers::instance().areAnyTaken())
    return ClippedRay(space, start, end, onlyDynamics, camera).nearest();
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
