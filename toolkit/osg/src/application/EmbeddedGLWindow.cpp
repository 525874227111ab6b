#include <zor/FlagScope.h>
#include <zorOSG/EmbeddedGLWindow.h>

#include "CameraControl.h"
#include "Conversion.h"
#include "InputAdapter.h"
#include "ModifierKeys.h"
#include "context/HostContext.h"
#include "debug/RenderProxyFactory.h"
#include "scene/Checks.h"

#include <zor/Notify.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/SceneDecorator.h>
#include <zorSDK/Simulation.h>

#include <osg/PolygonMode>
#include <osgGA/EventQueue>
#include <osgGA/NodeTrackerManipulator>
#include <osgGA/TrackballManipulator>
#include <osgUtil/GLObjectsVisitor>
#include <osgViewer/Viewer>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace zorOSG {

namespace {

constexpr double FIELD_OF_VIEW = 45;
constexpr int MAX_SIZE = 16384;

void requireSize(char const* method, int width, int height) {
  if (width < 0 || height < 0 || width > MAX_SIZE || height > MAX_SIZE)
    throw std::invalid_argument(std::string("EmbeddedGLWindow::") + method + ": a size of " +
                                std::to_string(width) + " x " + std::to_string(height) +
                                " pixels; each side must be 0 to " + std::to_string(MAX_SIZE));
}

bool fail(std::string const& reason) {
  zor::notify(zor::Notify::NOTIFY_ERROR) << "EmbeddedGLWindow::init: " << reason << zor::endMessage;
  return false;
}

} // namespace

struct EmbeddedGLWindow::Impl {
  osg::ref_ptr<osgViewer::Viewer> viewer; // null before init() and after clear()
  osg::ref_ptr<HostContext> context;
  osg::ref_ptr<SceneDecorator> decorator;
  osg::ref_ptr<osg::Group> root;
  osg::ref_ptr<InputAdapter> input;
  std::unique_ptr<RenderProxyFactory> proxies;
  zor::ref_ptr<zorSDK::Simulation> simulation;
  CameraControl camera;
  int width = 0;
  int height = 0;
  int polygonMode = osg::PolygonMode::FILL;
  bool isPrepared = false;
  bool isInFrame = false;

  void requireInit(char const* method) const {
    if (!viewer)
      throw std::runtime_error(std::string("EmbeddedGLWindow::") + method +
                               ": the window is not initialised, call init() first");
  }
  void requireContext(char const* method) const;
  void makeScene();
  void makeViewer(int x, int y);
  void place(int x, int y, int newWidth, int newHeight);
  void applyPolygonMode();
  void updateProxies();
  void prepare();
  void clear();
  osgGA::EventQueue* events() const { return context ? context->getEventQueue() : nullptr; }
  osgGA::EventQueue* eventsWith(unsigned int modifiers) const;
};

void EmbeddedGLWindow::Impl::requireContext(char const* method) const {
  requireInit(method);
  if (context->isHostCurrent())
    return;
  std::string const problem = HostContext::findProblem();
  throw std::runtime_error(std::string("EmbeddedGLWindow::") + method + ": " +
                           (problem.empty()
                                ? "another OpenGL context is current than was at init(); for a new "
                                  "context, call clear() and init() again"
                                : problem));
}

void EmbeddedGLWindow::Impl::makeScene() {
  root = new osg::Group;
  root->setName("EmbeddedRoot");
  decorator = new SceneDecorator(width, height);
  decorator->addChild(root);
  applyPolygonMode();
  proxies = std::make_unique<RenderProxyFactory>();
  proxies->node()->setNodeMask(DEBUG_RENDER_MASK);
  decorator->getNonShadowedScene()->addChild(proxies->node());
}

/** Shown to a camera that asks for it, at no cost to others. */
void EmbeddedGLWindow::Impl::updateProxies() {
  bool const isSeen = viewer->getCamera()->getCullMask() & DEBUG_RENDER_MASK;
  proxies->setEnabled(isSeen && simulation);
  proxies->update(simulation.get());
}

void EmbeddedGLWindow::Impl::makeViewer(int x, int y) {
  viewer = new osgViewer::Viewer;
  viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
  viewer->setUseConfigureAffinity(false);
  viewer->setLightingMode(osg::View::NO_LIGHT); // the scene decorator brings its own
  viewer->setKeyEventSetsDone(0);
  viewer->setReleaseContextAtEndOfFrameHint(false);
  context = new HostContext(x, y, width, height);
  viewer->getCamera()->setGraphicsContext(context);
  viewer->getCamera()->setCullMask(~static_cast<unsigned int>(DEBUG_RENDER_MASK));
  viewer->getCamera()->setProjectionMatrixAsPerspective(FIELD_OF_VIEW, 1, 0.1, 10000);
  viewer->setSceneData(decorator);
  place(x, y, width, height);
  camera.attach(viewer);
  input = new InputAdapter({[this] { return simulation.get(); },
                            [](int) { return false; },
                            [this](int w, int h) { decorator->updateWindowSize(w, h); },
                            {}});
  viewer->addEventHandler(input);
}

void EmbeddedGLWindow::Impl::place(int x, int y, int newWidth, int newHeight) {
  width = std::max(newWidth, 1);
  height = std::max(newHeight, 1);
  osg::Camera& view = *viewer->getCamera();
  double fovy = FIELD_OF_VIEW, aspect = 1, zNear = 0.1, zFar = 10000;
  view.getProjectionMatrixAsPerspective(fovy, aspect, zNear, zFar);
  view.setProjectionMatrixAsPerspective(fovy, static_cast<double>(width) / height, zNear, zFar);
  view.setViewport(x, y, width, height);
  context->setArea(x, y, width, height);
  events()->windowResize(x, y, width, height);
}

void EmbeddedGLWindow::Impl::applyPolygonMode() {
  if (!root)
    return;
  osg::StateSet* const state = root->getOrCreateStateSet();
  if (polygonMode == osg::PolygonMode::FILL)
    state->removeAttribute(osg::StateAttribute::POLYGONMODE);
  else
    state->setAttribute(new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK,
                                             static_cast<osg::PolygonMode::Mode>(polygonMode)));
}

void EmbeddedGLWindow::Impl::prepare() {
  HostStateScope const hostState(*context);
  viewer->realize();
  osg::ref_ptr<osgUtil::GLObjectsVisitor> const loader = new osgUtil::GLObjectsVisitor;
  loader->setState(context->getState());
  decorator->accept(*loader);
  isPrepared = true;
}

/** What scripts still hold, such as the camera, survives without the window. */
void EmbeddedGLWindow::Impl::clear() {
  simulation = nullptr;
  if (!viewer)
    return;
  input->disconnect();
  camera.detach();
  viewer->setSceneData(nullptr);
  if (context->isHostCurrent())
    decorator->releaseGLObjects(context->getState());
  context->close(context->isHostCurrent());
  viewer->getCamera()->setGraphicsContext(nullptr);
  viewer = nullptr;
  context = nullptr;
  input = nullptr;
  proxies = nullptr;
  decorator = nullptr;
  root = nullptr;
  isPrepared = false;
  width = height = 0;
}

osgGA::EventQueue* EmbeddedGLWindow::Impl::eventsWith(unsigned int modifiers) const {
  osgGA::EventQueue* const queue = events();
  if (queue)
    queue->getCurrentEventState()->setModKeyMask(modifiers);
  return queue;
}

// --- The class

EmbeddedGLWindow::EmbeddedGLWindow() : m_impl(std::make_unique<Impl>()) {}

EmbeddedGLWindow::~EmbeddedGLWindow() {
  try {
    m_impl->clear();
  } catch (std::exception const& error) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << "EmbeddedGLWindow: " << error.what() << zor::endMessage;
  }
}

bool EmbeddedGLWindow::init(int x, int y, int width, int height) {
  requireSize("init", width, height);
  Impl& m = *m_impl;
  if (m.viewer)
    return fail("the window is initialised already; call clear() first");
  if (std::string const problem = HostContext::findProblem(); !problem.empty())
    return fail(problem);
  m.width = std::max(width, 1);
  m.height = std::max(height, 1);
  m.makeScene();
  m.makeViewer(x, y);
  return true;
}

void EmbeddedGLWindow::initGL() {
  m_impl->requireContext("initGL");
  if (m_impl->isInFrame)
    throw std::runtime_error("EmbeddedGLWindow::initGL: not possible inside frame()");
  m_impl->prepare();
}

void EmbeddedGLWindow::frame() {
  Impl& m = *m_impl;
  m.requireContext("frame");
  if (m.isInFrame)
    throw std::runtime_error("EmbeddedGLWindow::frame: not possible inside another frame()");
  zor::FlagScope const inFrame(m.isInFrame);
  if (!m.isPrepared)
    m.prepare();
  m.viewer->advance();
  m.viewer->eventTraversal();
  m.input->rethrow();
  m.updateProxies();
  m.viewer->updateTraversal();
  HostStateScope const hostState(*m.context);
  m.viewer->renderingTraversals();
}

void EmbeddedGLWindow::resize(int x, int y, int width, int height) {
  requireSize("resize", width, height);
  m_impl->requireInit("resize");
  m_impl->place(x, y, width, height);
}

void EmbeddedGLWindow::clear() {
  if (m_impl->isInFrame)
    throw std::runtime_error("EmbeddedGLWindow::clear: not possible inside frame()");
  m_impl->clear();
}

void EmbeddedGLWindow::setSimulation(zorSDK::Simulation* simulation) {
  m_impl->simulation = simulation;
}

void EmbeddedGLWindow::removeSimulation() {
  m_impl->simulation = nullptr;
}

zorSDK::Simulation* EmbeddedGLWindow::getSimulation() {
  return m_impl->simulation.get();
}

osg::Group* EmbeddedGLWindow::getRoot() {
  return m_impl->root.get();
}

osg::Group const* EmbeddedGLWindow::getRoot() const {
  return m_impl->root.get();
}

osg::Camera* EmbeddedGLWindow::getCamera() {
  return m_impl->viewer ? m_impl->viewer->getCamera() : nullptr;
}

osg::Camera const* EmbeddedGLWindow::getCamera() const {
  return m_impl->viewer ? m_impl->viewer->getCamera() : nullptr;
}

zorOSG::SceneDecorator* EmbeddedGLWindow::getSceneDecorator() {
  return m_impl->decorator.get();
}

zor::Real EmbeddedGLWindow::getSceneRadius(osg::Group* scene) {
  osg::Group const* const group = scene ? scene : m_impl->root.get();
  return group && group->getBound().valid() ? static_cast<zor::Real>(group->getBound().radius()) : 0;
}

void EmbeddedGLWindow::fitSceneIntoView() {
  m_impl->requireInit("fitSceneIntoView");
  m_impl->camera.fit(m_impl->root->getBound());
}

void EmbeddedGLWindow::setTrackBallManipulator() {
  m_impl->requireInit("setTrackBallManipulator");
  m_impl->camera.useTrackball();
}

void EmbeddedGLWindow::setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& pos) {
  requireGiven("EmbeddedGLWindow::setOrbitCamera", "node", node);
  m_impl->requireInit("setOrbitCamera");
  m_impl->camera.track(*node, {pos, fromOsg(worldCenter(*node)), zor::Vec3(0, 0, 1)},
                       osgGA::NodeTrackerManipulator::NODE_CENTER);
}

void EmbeddedGLWindow::setPolygonMode(int mode) {
  if (mode < osg::PolygonMode::POINT || mode > osg::PolygonMode::FILL)
    throw std::invalid_argument("EmbeddedGLWindow::setPolygonMode: " + std::to_string(mode) +
                                " is none of GL_POINT (6912), GL_LINE (6913) and GL_FILL (6914)");
  m_impl->polygonMode = mode;
  m_impl->applyPolygonMode();
}

int EmbeddedGLWindow::getPolygonMode() const {
  return m_impl->polygonMode;
}

int EmbeddedGLWindow::getWidth() const {
  return m_impl->width;
}

int EmbeddedGLWindow::getHeight() const {
  return m_impl->height;
}

// --- Input

osgGA::EventQueue* EmbeddedGLWindow::getEventQueue() {
  return m_impl->events();
}

void EmbeddedGLWindow::keyPressEvent(int key, int mod_mask) {
  // Hosts don't agree on whether the mask has the key itself.
  if (auto* const queue = m_impl->eventsWith(modifiersAfter(static_cast<unsigned int>(mod_mask), key, true)))
    queue->keyPress(key);
}

void EmbeddedGLWindow::keyReleaseEvent(int key, int mod_mask) {
  if (auto* const queue = m_impl->eventsWith(modifiersAfter(static_cast<unsigned int>(mod_mask), key, false)))
    queue->keyRelease(key);
}

void EmbeddedGLWindow::mouseMoveEvent(int x, int y) {
  if (auto* const queue = m_impl->events())
    queue->mouseMotion(static_cast<float>(x), static_cast<float>(y));
}

namespace {

unsigned int viewerButton(int button) {
  if (button < 0 || button > 2)
    throw std::invalid_argument("EmbeddedGLWindow: there is no mouse button " + std::to_string(button) +
                                "; 0 is left, 1 middle, 2 right");
  return static_cast<unsigned int>(button) + 1;
}

} // namespace

void EmbeddedGLWindow::mousePressEvent(int x, int y, int button) {
  unsigned int const number = viewerButton(button);
  if (auto* const queue = m_impl->events())
    queue->mouseButtonPress(static_cast<float>(x), static_cast<float>(y), number);
}

void EmbeddedGLWindow::mouseReleaseEvent(int x, int y, int button) {
  unsigned int const number = viewerButton(button);
  if (auto* const queue = m_impl->events())
    queue->mouseButtonRelease(static_cast<float>(x), static_cast<float>(y), number);
}

void EmbeddedGLWindow::wheelEvent(int motion) {
  if (motion != 0 && motion != 1)
    throw std::invalid_argument("EmbeddedGLWindow::wheelEvent: " + std::to_string(motion) +
                                " is neither 0 (up) nor 1 (down)");
  if (auto* const queue = m_impl->events())
    queue->mouseScroll(motion == 0 ? osgGA::GUIEventAdapter::SCROLL_UP : osgGA::GUIEventAdapter::SCROLL_DOWN);
}

} // namespace zorOSG
