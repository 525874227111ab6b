#include <zorOSG/PickHandler.h>

#include "Conversion.h"
#include "MouseSpring.h"
#include "RayPick.h"
#include "scene/Checks.h"

#include <zorOSG/CameraFunctions.h>
#include <zorSDK/Simulation.h>

#include <osg/Camera>
#include <osgViewer/Viewer>

#include <cmath>
#include <stdexcept>

namespace zorOSG {

namespace {

using Listener = zorSDK::GuiEventListener;

constexpr unsigned ALL_BUTTONS = Listener::LEFT_BUTTON | Listener::MIDDLE_BUTTON | Listener::RIGHT_BUTTON;
constexpr unsigned ALL_KEYS = Listener::MODKEY_SHIFT | Listener::MODKEY_CTRL | Listener::MODKEY_ALT;

void requireMask(char const* method, unsigned int mask, unsigned int all) {
  if (mask & ~all)
    throw std::invalid_argument(std::string("PickHandler::") + method + ": " + std::to_string(mask) +
                                " has bits that stand for nothing; all that do are " + std::to_string(all));
}

osg::Camera& required(osg::Camera* camera) {
  if (!camera)
    throw std::runtime_error("PickHandler: there is no camera; give it one with setCamera()");
  return *camera;
}

double depthOf(osg::Vec3d const& point, osg::Camera const& camera) {
  return -(point * camera.getViewMatrix()).z();
}

} // namespace

PickHandler::PickHandler(osgViewer::Viewer* viewer, osg::Group* scene) : m_viewer(viewer), m_scene(scene) {
  if (scene)
    createMouseSpringRendering(1);
}

PickHandler::~PickHandler() = default;

// --- Picking

zorSDK::PickResult PickHandler::pick(float screenX, float screenY) {
  reset();
  zorSDK::PickResult const result = intersect(screenX, screenY, false);
  if (!result.isDynamic() || !grab(result.getRigidBody(), result.getPoint()))
    return result;
  m_x = screenX;
  m_y = screenY;
  m_depth = depthOf(toOsg(result.getPoint() * getInverseTransform().inverse()), *getCamera());
  showSpring();
  return result;
}

zorSDK::PickResult PickHandler::intersect(zor::Vec3 const& start, zor::Vec3 const& end, bool onlyDynamics) {
  zorSDK::Simulation const* const simulation = findSimulation();
  if (!simulation)
    throw std::runtime_error("PickHandler: there is no simulation; give it one with setSimulation()");
  return zorSDK::PickResult(
      nearestHit("PickHandler::intersect", *simulation->getSpace(), start, end, onlyDynamics, getCamera()));
}

zorSDK::PickResult PickHandler::intersect(float screenX, float screenY, bool onlyDynamics) {
  zor::Vec3 near, far;
  getNearFarPoints(&required(getCamera()), near, far, screenX, screenY);
  return intersect(near, far, onlyDynamics);
}

void PickHandler::getNearFarPoints(osg::Camera const* camera, zor::Vec3& near, zor::Vec3& far, float x,
                                   float y, bool inSimulation) const {
  zorOSG::getNearFarPoints(camera, x, y, near, far);
  if (!inSimulation)
    return;
  near = near * getInverseTransform();
  far = far * getInverseTransform();
}

/** \return the point under a screen position that is as deep in the picture as the body was when picked. */
zor::Vec3 PickHandler::targetAt(float x, float y) const {
  osg::Camera const& camera = required(getCamera());
  zor::Vec3 near, far;
  getNearFarPoints(&camera, near, far, x, y, false);
  double const nearDepth = depthOf(toOsg(near), camera), farDepth = depthOf(toOsg(far), camera);
  zor::Vec3 const target = near + (far - near) * ((m_depth - nearDepth) / (farDepth - nearDepth));
  return target * getInverseTransform();
}

// --- Events

bool PickHandler::areKeysDown() const {
  unsigned int const down = getModKeyMask();
  for (unsigned int const kind : {MODKEY_SHIFT, MODKEY_CTRL, MODKEY_ALT})
    if ((m_keys & kind) && !(m_keys & kind & down))
      return false;
  return true;
}

bool PickHandler::keyboard(int, unsigned int modKeyMask, float, float, bool) {
  setModKeyMask(modKeyMask);
  return false;
}

bool PickHandler::mouse(zorSDK::GuiEventListener::MouseButtonMask button,
                        zorSDK::GuiEventListener::MouseState state, float x, float y) {
  if (!(static_cast<unsigned int>(button) & m_button))
    return false;
  if (state == DOWN) {
    if (areKeysDown() && findSimulation() && getCamera())
      pick(x, y);
    return getPickedBody() != nullptr;
  }
  bool const held = getPickedBody() != nullptr;
  reset();
  return held;
}

bool PickHandler::mouseDragged(zorSDK::GuiEventListener::MouseButtonMask buttonMask, float x, float y) {
  if (!getPickedBody())
    return false;
  if (!(static_cast<unsigned int>(buttonMask) & m_button)) { // the release went elsewhere
    reset();
    return false;
  }
  follow(x, y);
  return true;
}

void PickHandler::update(float, float) {
  if (getPickedBody())
    follow(m_x, m_y); // the camera may have moved
  else
    reset(); // the body may have gone
}

void PickHandler::follow(float x, float y) {
  m_x = x;
  m_y = y;
  zor::Vec3 const target = getCamera() ? targetAt(x, y) : getTarget();
  if (target.isFinite())
    moveTo(target);
  showSpring();
}

void PickHandler::reset() {
  zorSDK::PickHandler::reset();
  if (m_spring)
    m_spring->hide();
}

// --- Settings

void PickHandler::setActivateMouseButton(unsigned int button) {
  requireMask("setActivateMouseButton", button, ALL_BUTTONS);
  m_button = button;
}

int PickHandler::getActivateMouseButton() const {
  return static_cast<int>(m_button);
}

void PickHandler::setActivateModKeyMask(unsigned int mask) {
  requireMask("setActivateModKeyMask", mask, ALL_KEYS);
  m_keys = mask;
}

int PickHandler::getActivateModKeyMask() const {
  return static_cast<int>(m_keys);
}

void PickHandler::setCamera(osg::Camera* camera) {
  m_camera = camera;
}

osg::Camera* PickHandler::getCamera() const {
  if (m_camera)
    return m_camera.get();
  return m_viewer.valid() ? m_viewer->getCamera() : nullptr;
}

void PickHandler::setSimulation(zorSDK::Simulation* simulation) {
  zorSDK::PickHandler::setSimulation(simulation);
  updateRenderState();
}

// --- What is seen

void PickHandler::createMouseSpringRendering(float scale) {
  requirePositive("PickHandler::createMouseSpringRendering", "scale", scale);
  if (!m_scene) {
    osg::Node* const data = m_viewer.valid() ? m_viewer->getSceneData() : nullptr;
    m_scene = data ? data->asGroup() : nullptr;
  }
  if (!m_scene)
    throw std::runtime_error("PickHandler::createMouseSpringRendering: there is no scene to draw in");
  m_spring = std::make_unique<MouseSpring>(*m_scene, scale);
  updateRenderState();
}

void PickHandler::updateRenderState() {
  if (getPickedBody())
    showSpring();
  else if (m_spring)
    m_spring->hide();
}

void PickHandler::showSpring() {
  osg::Camera const* const camera = getCamera();
  zor::RigidBody* const body = getPickedBody();
  if (!m_spring || !camera || !body)
    return;
  zor::AffineMatrix4x4 const toViewer = getInverseTransform().inverse();
  double const limit = getForceLimit() * body->getMassProperties()->getMass();
  m_spring->show(toOsg(getGrabPoint() * toViewer), toOsg(getTarget() * toViewer), *camera,
                 getForce().length() / limit);
}

} // namespace zorOSG
