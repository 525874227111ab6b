#include "DebugKinds.h"

#include "DebugSizes.h"
#include "scene/Convert.h"

#include <algorithm>
#include <array>

namespace zorOSG {

namespace {

osg::Vec4ub const MOVING(90, 230, 120, 255), ASLEEP(110, 150, 255, 255), FIXED(165, 165, 170, 255),
    SENSOR(230, 120, 255, 255);
osg::Vec4ub const RED(240, 70, 60, 255), GREEN(80, 210, 90, 255), BLUE(80, 130, 255, 255);
osg::Vec4ub const JOINT(255, 190, 40, 255), IDLE(150, 140, 120, 255), SPEED(80, 220, 255, 255);
osg::Vec4ub const CENTER(255, 255, 255, 255);

constexpr double AXIS = 1.6;         // length of a joint's axis, in radii of its body
constexpr double FRAME = 0.35;       // of an attachment's other axes
constexpr double MASS_AXES = 0.45;   // of the axes at a centre of mass
constexpr double SECONDS_AHEAD = .1; // a velocity is drawn as the way within this time

/** \return from yellow for nothing to red for all */
osg::Vec4ub loadColor(double part) {
  double const rest = 1 - std::clamp(part, 0.0, 1.0);
  return {255, static_cast<unsigned char>(40 + 190 * rest), 40, 255};
}

osg::Vec3d axisOf(osg::Matrixd const& frame, int row) {
  return {frame(row, 0), frame(row, 1), frame(row, 2)};
}

void drawAxes(DebugLines& lines, osg::Matrixd const& frame, double x, double y, double z) {
  osg::Vec3d const at = frame.getTrans();
  lines.line(at, at + axisOf(frame, 0) * x, RED);
  lines.line(at, at + axisOf(frame, 1) * y, GREEN);
  lines.line(at, at + axisOf(frame, 2) * z, BLUE);
}

double smallerRadius(zorCollide::GeometryContact const& contact) {
  double const first = radiusOf(*contact.getGeometry1());
  double const second = radiusOf(*contact.getGeometry2());
  return first > 0 && second > 0 ? std::min(first, second) : std::max(first, second);
}

double largestForce(zorCollide::LocalGeometryContactVector const& contacts) {
  double largest = 0;
  for (auto const& contact : contacts)
    for (auto const& point : contact.getPoints())
      largest = std::max(largest, point.getNormalForceMagnitude());
  return largest;
}

double lengthOf(zor::Constraint const& constraint) {
  double length = 0;
  for (zor::UInt i = 0; i < constraint.getNumBodies(); ++i)
    if (zor::RigidBody const* const body = constraint.getBody(i)) {
      double const radius = radiusOf(*body);
      length = length > 0 && radius > 0 ? std::min(length, radius) : std::max(length, radius);
    }
  return length > 0 ? length : 0.5;
}

void drawBox(DebugLines& lines, osg::Vec3d const& low, osg::Vec3d const& high, osg::Vec4ub const& color) {
  auto const corner = [&](int i) {
    return osg::Vec3d((i & 1) ? high.x() : low.x(), (i & 2) ? high.y() : low.y(),
                      (i & 4) ? high.z() : low.z());
  };
  for (int i = 0; i < 8; ++i)
    for (int const axis : {1, 2, 4})
      if (!(i & axis))
        lines.line(corner(i), corner(i | axis), color);
}

} // namespace

osg::Vec4ub stateColor(zorCollide::Geometry const& geometry) {
  if (geometry.isSensor())
    return SENSOR;
  zor::RigidBody const* const body = geometry.getRigidBody();
  if (!body || body->getMotionControl() != zor::RigidBody::DYNAMICS || !body->getEnable())
    return FIXED;
  return body->isSleeping() ? ASLEEP : MOVING;
}

void drawContacts(zorSDK::Simulation const& simulation, DebugLines& lines) {
  auto const contacts = simulation.getSpace()->getGeometryContacts();
  double const largest = largestForce(contacts);
  for (auto const& contact : contacts) {
    if (contact.isEmpty())
      continue;
    double const length = 0.5 * smallerRadius(contact);
    for (auto const& point : contact.getPoints()) {
      osg::Vec3d const at = toOsg(point.getPoint());
      osg::Vec4ub const color = contact.isSensorContact()
                                    ? SENSOR
                                    : loadColor(largest > 0 ? point.getNormalForceMagnitude() / largest : 0);
      lines.point(at, color);
      lines.line(at, at + toOsg(point.getNormal()) * length, color);
    }
  }
}

void drawConstraintAxes(zorSDK::Simulation const& simulation, DebugLines& lines) {
  for (auto const& constraint : simulation.getConstraints()) {
    double const length = lengthOf(*constraint);
    osg::Vec4ub const color = constraint->getEnable() ? JOINT : IDLE;
    for (zor::UInt i = 0; i < 2; ++i) {
      osg::Matrixd const frame = toOsg(constraint->getAttachmentTransform(i));
      drawAxes(lines, frame, FRAME * length, FRAME * length, 0);
      lines.point(frame.getTrans(), color);
    }
    osg::Matrixd const frame = toOsg(constraint->getAttachmentTransform(0));
    osg::Vec3d const reach = axisOf(frame, 2) * (0.5 * AXIS * length);
    lines.line(frame.getTrans() - reach, frame.getTrans() + reach, color);
    // What a joint holds together shows as one point; a line tells how far it is pulled apart.
    lines.line(frame.getTrans(), toOsg(constraint->getAttachmentTransform(1)).getTrans(), RED);
  }
}

void drawBoundingBoxes(zorSDK::Simulation const& simulation, DebugLines& lines) {
  for (auto const& geometry : simulation.getGeometries()) {
    if (!geometry->getEnable() || radiusOf(*geometry) <= 0)
      continue;
    zor::Vec3 lower, upper;
    geometry->getBounds(lower, upper);
    drawBox(lines, toOsg(lower), toOsg(upper), stateColor(*geometry));
  }
}

void drawCentersOfMass(zorSDK::Simulation const& simulation, DebugLines& lines) {
  for (auto const& body : simulation.getRigidBodies()) {
    if (body->getMotionControl() == zor::RigidBody::STATIC || !body->getEnable())
      continue;
    osg::Matrixd const frame = toOsg(body->getCmTransform());
    double const length = MASS_AXES * radiusOf(*body);
    lines.point(frame.getTrans(), CENTER);
    drawAxes(lines, frame, length, length, length);
    lines.line(frame.getTrans(), frame.getTrans() + toOsg(body->getVelocity()) * SECONDS_AHEAD, SPEED);
  }
}

} // namespace zorOSG
