#include "ContactVisualUpdater.h"

#include <algorithm>
#include <cmath>

#include <zorCollide/Space.h>
#include <zorSDK/Simulation.h>

#include "scene/Convert.h"

namespace zorOSG {

namespace {

osg::Vec4ub const POINT_COLOR(255, 196, 30, 255);
osg::Vec4ub const NORMAL_COLOR(30, 220, 235, 255);

/** Half of the longest side of a geometry's box; infinite for a plane. */
double halfSize(zorCollide::Geometry const& geometry) {
  zor::Vec3 lower, upper;
  geometry.getBounds(lower, upper);
  zor::Vec3 const size = upper - lower;
  return 0.5 * std::max({size.x(), size.y(), size.z()});
}

/** How long normals are drawn: in proportion to the smaller of the two that touch. */
double normalLength(zorCollide::GeometryContact const& contact) {
  double const size = std::min(halfSize(*contact.getGeometry1()), halfSize(*contact.getGeometry2()));
  return std::isfinite(size) ? 0.8 * size : 1.0;
}

} // namespace

ContactVisualUpdater::ContactVisualUpdater(zorSDK::ContactEventListener& listener, osg::Group& root)
    : zorSDK::StepEventListener(LAST_STEP), m_listener(&listener), m_root(&root),
      m_lines("contacts", DebugLines::Layer::ON_TOP, 2, 7) {}

void ContactVisualUpdater::addNotification() {
  osg::ref_ptr<osg::Group> root;
  if (m_root.lock(root))
    root->addChild(m_lines.node());
}

void ContactVisualUpdater::removeNotification() {
  osg::ref_ptr<osg::Group> root;
  if (m_root.lock(root))
    root->removeChild(m_lines.node());
}

void ContactVisualUpdater::last(zor::TimeStamp) {
  m_lines.begin(osg::Matrixd());
  zor::ref_ptr<zorSDK::ContactEventListener> const listener = m_listener.lock();
  if (listener && listener->getEnable() && listener->getSimulation())
    for (zorCollide::GeometryContact const& contact : getSimulation()->getSpace()->getGeometryContacts())
      if (listener->match(contact.getGeometry1(), contact.getGeometry2()))
        write(contact);
  m_lines.end();
}

void ContactVisualUpdater::write(zorCollide::GeometryContact const& contact) {
  double const length = normalLength(contact);
  for (zorCollide::ContactPoint const& point : contact.getPoints()) {
    osg::Vec3d const at = toOsg(point.getPoint());
    m_lines.point(at, POINT_COLOR);
    m_lines.line(at, at + toOsg(point.getNormal()) * length, NORMAL_COLOR);
  }
}

} // namespace zorOSG
