#include "CameraControl.h"

#include "Conversion.h"
#include "FlyManipulator.h"

#include <zorOSG/CameraData.h>

#include <osgGA/NodeTrackerManipulator>
#include <osgGA/OrbitManipulator>
#include <osgGA/TrackballManipulator>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace zorOSG {

namespace {

constexpr char const* MARKER_NAME = "TrackedPoint";

/**
 * The library's tracker takes a node's bound, which a transform gives in its parent's coordinates, for one in
 * the node's own. A child without content has its centre at the node's origin in either reading.
 */
osg::Node* trackedPoint(osg::Group& node) {
  for (unsigned i = 0; i < node.getNumChildren(); ++i)
    if (node.getChild(i)->getName() == MARKER_NAME)
      return node.getChild(i);
  osg::ref_ptr<osg::Group> const marker = new osg::Group;
  marker->setName(MARKER_NAME);
  node.addChild(marker);
  return marker.get();
}

void requireUsable(CameraControl::Pose const& pose) {
  if (!CameraControl::givesDirection(pose))
    throw std::invalid_argument("camera home: eye and center must be apart, and up not along the view");
}

void requireTrackable(CameraControl::Pose const& pose, int trackerMode) {
  requireUsable(pose);
  if (trackerMode < osgGA::NodeTrackerManipulator::NODE_CENTER ||
      trackerMode > osgGA::NodeTrackerManipulator::NODE_CENTER_AND_ROTATION)
    throw std::invalid_argument("setOrbitCamera: tracker mode must be 0, 1 or 2");
}

/** The viewer leaves its address in the manipulator, which scripts may keep for longer: for the sake of
 * worlds that are round, of which there are none here. */
void give(osgViewer::Viewer& viewer, osgGA::CameraManipulator* manipulator) {
  viewer.setCameraManipulator(manipulator, false);
  manipulator->setCoordinateFrameCallback(nullptr);
}

} // namespace

osg::Vec3d worldCenter(osg::Node& node) {
  osg::Vec3d const center = node.getBound().center();
  if (node.getNumParents() == 0)
    return center;
  auto const worlds = node.getParent(0)->getWorldMatrices();
  return worlds.empty() ? center : center * worlds.front();
}

bool CameraControl::givesDirection(Pose const& pose) {
  osg::Vec3d const direction = toOsg(pose.center) - toOsg(pose.eye);
  osg::Vec3d const side = direction ^ toOsg(pose.up);
  return side.length() > 0 && std::isfinite(side.length()); // NaN is not above zero
}

void CameraControl::attach(osgViewer::Viewer* viewer) {
  m_viewer = viewer;
  useOrbit();
  moveTo(m_home);
}

void CameraControl::install(osgGA::StandardManipulator* manipulator) {
  manipulator->setAllowThrow(false); // a camera that goes on turning by itself spoils captures
  manipulator->setAutoComputeHomePosition(false);
  manipulator->setHomePosition(toOsg(m_home.eye), toOsg(m_home.center), toOsg(m_home.up));
  give(*m_viewer, manipulator);
}

void CameraControl::useOrbit() {
  if (m_viewer)
    install(new osgGA::OrbitManipulator);
}

void CameraControl::useTrackball() {
  if (!m_viewer)
    return;
  Pose const pose = current();
  install(new osgGA::TrackballManipulator);
  moveTo(pose);
}

void CameraControl::switchMode(osg::BoundingSphere const& bound) {
  if (!m_viewer)
    return;
  Pose const pose = current();
  if (dynamic_cast<FlyManipulator*>(m_viewer->getCameraManipulator()))
    useOrbit();
  else
    install(new FlyManipulator(bound.valid() && bound.radius() > 0 ? 0.4 * bound.radius() : 1));
  moveTo(pose);
}

bool CameraControl::isTracking() const {
  return m_viewer && dynamic_cast<osgGA::NodeTrackerManipulator*>(m_viewer->getCameraManipulator());
}

void CameraControl::letGo() {
  Pose const pose = current();
  if (!isTracking())
    return;
  useOrbit();
  moveTo(pose);
}

void CameraControl::show(Pose const& pose) {
  letGo();
  moveTo(pose);
}

void CameraControl::setHome(Pose const& pose) {
  requireUsable(pose);
  m_home = pose;
  m_homeSet = true;
  moveTo(pose);
}

void CameraControl::reset() {
  m_homeSet = false;
  if (isTracking())
    useOrbit();
}

void CameraControl::goHome(osg::BoundingSphere const& bound) {
  if (!m_homeSet && bound.valid() && bound.radius() > 0) {
    osg::Vec3d direction(0.5, -1.0, 0.5);
    direction.normalize();
    m_home.center = fromOsg(bound.center());
    m_home.eye = fromOsg(osg::Vec3d(bound.center()) + direction * fitDistance(bound.radius()));
    m_home.up = zor::Vec3(0, 0, 1);
  }
  moveTo(m_home);
}

void CameraControl::fit(osg::BoundingSphere const& bound) {
  if (!m_viewer || !bound.valid() || bound.radius() <= 0)
    return;
  Pose pose = current();
  osg::Vec3d direction = toOsg(pose.center) - toOsg(pose.eye);
  direction.normalize();
  pose.center = fromOsg(bound.center());
  pose.eye = fromOsg(osg::Vec3d(bound.center()) - direction * fitDistance(bound.radius()));
  moveTo(pose);
}

void CameraControl::lookAt(osg::BoundingSphere const& bound) {
  if (!m_viewer || !bound.valid())
    return;
  Pose pose = current();
  osg::Vec3d const direction = osg::Vec3d(bound.center()) - toOsg(pose.eye);
  if ((direction ^ toOsg(pose.up)).length() <= 0)
    return;
  pose.center = fromOsg(bound.center());
  moveTo(pose);
}

void CameraControl::track(osg::Group& node, Pose const& pose, int trackerMode) {
  requireTrackable(pose, trackerMode);
  m_home = pose;
  m_homeSet = true;
  if (m_viewer)
    track(*m_viewer, node, pose, trackerMode);
}

void CameraControl::track(osgViewer::Viewer& viewer, osg::Group& node, Pose const& pose, int trackerMode) {
  requireTrackable(pose, trackerMode);
  osg::ref_ptr<osgGA::NodeTrackerManipulator> tracker = new osgGA::NodeTrackerManipulator;
  tracker->setTrackerMode(static_cast<osgGA::NodeTrackerManipulator::TrackerMode>(trackerMode));
  tracker->setRotationMode(osgGA::NodeTrackerManipulator::ELEVATION_AZIM);
  tracker->setTrackNodePath(trackedPoint(node)->getParentalNodePaths().front());
  tracker->setAutoComputeHomePosition(false);
  tracker->setHomePosition(toOsg(pose.eye), toOsg(pose.center), toOsg(pose.up));
  give(viewer, tracker.get());
  viewer.home();
}

CameraControl::Pose CameraControl::current() const {
  if (!m_viewer)
    return m_home;
  CameraData const data(m_viewer);
  return {data.eye, data.center, data.up};
}

void CameraControl::moveTo(Pose const& pose) {
  if (!m_viewer)
    return;
  auto* const manipulator = m_viewer->getCameraManipulator();
  manipulator->setHomePosition(toOsg(m_home.eye), toOsg(m_home.center), toOsg(m_home.up));
  if (auto* const standard = dynamic_cast<osgGA::StandardManipulator*>(manipulator))
    standard->setTransformation(toOsg(pose.eye), toOsg(pose.center), toOsg(pose.up));
  // Without this the camera would follow only in the next frame.
  manipulator->updateCamera(*m_viewer->getCamera());
}

double CameraControl::fitDistance(double radius) const {
  double fovy = 45, aspect = 1, zNear = 0, zFar = 0;
  if (m_viewer)
    m_viewer->getCamera()->getProjectionMatrixAsPerspective(fovy, aspect, zNear, zFar);
  double const vertical = fovy * std::numbers::pi / 360;
  double const horizontal = std::atan(std::tan(vertical) * aspect);
  return radius / std::sin(std::min(vertical, horizontal));
}

} // namespace zorOSG
