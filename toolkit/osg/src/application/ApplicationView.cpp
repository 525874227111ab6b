#include "ExampleApplicationImpl.h"

#include "Conversion.h"
#include "NativeWindow.h"
#include "scene/Ancestry.h"
#include "scene/Checks.h"

#include <zorOSG/GeometryNode.h>

#include <osgGA/NodeTrackerManipulator>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace zorOSG {

namespace {

constexpr zor::UInt MULTI_SUB_STEPS = 4;
constexpr int NODE_CENTER = osgGA::NodeTrackerManipulator::NODE_CENTER;

} // namespace

// --- Viewer and window

void ExampleApplication::setupViewer(bool lightingEnabled, bool visibleWindow) {
  m_impl->openViewer(visibleWindow && !m_impl->options.offscreen);
  getSceneDecorator()->setEnableLights(lightingEnabled ? SceneDecorator::ALL : 0);
}

void ExampleApplication::initViewer(int width, int height, bool osgWindow) {
  if (width < 1 || height < 1 || width > 16384 || height > 16384)
    throw std::invalid_argument("initViewer: width and height must be 1 to 16384 pixels");
  m_impl->options.width = width;
  m_impl->options.height = height;
  m_impl->openViewer(osgWindow && !m_impl->options.offscreen);
}

void ExampleApplication::initGraphics() {
  if (m_impl->host || !m_impl->wantsGraphics)
    return;
  m_impl->openViewer(!m_impl->options.offscreen);
  m_impl->camera.goHome(m_impl->graph.bound());
}

osgViewer::Viewer* ExampleApplication::getViewer() const {
  return m_impl->host ? &m_impl->host->viewer() : nullptr;
}

osg::Camera* ExampleApplication::getCamera() const {
  return m_impl->host ? m_impl->host->viewer().getCamera() : nullptr;
}

osg::Camera* ExampleApplication::getTextureCamera() const {
  return m_impl->targets.empty() ? nullptr : m_impl->targets.back().target->getCamera();
}

bool ExampleApplication::hasRenderContext() const {
  return m_impl->host != nullptr;
}

bool ExampleApplication::hasOffscreenWindow() const {
  return m_impl->host && !m_impl->host->window();
}

intptr_t ExampleApplication::getHWND() const {
  return m_impl->host ? nativeWindowHandle(m_impl->host->window()) : 0;
}

bool ExampleApplication::setWindowRectangle(unsigned int x, unsigned int y, unsigned int width,
                                            unsigned int height) {
  constexpr unsigned MAX_COORDINATE = 32767;
  if (width < 1 || height < 1 || std::max({x, y, width, height}) > MAX_COORDINATE)
    throw std::invalid_argument("setWindowRectangle: position and size must be up to 32767, size above zero");
  auto* const window = m_impl->host ? m_impl->host->window() : nullptr;
  if (!window)
    return false;
  setWindowResizable(window, true);
  window->setWindowRectangle(static_cast<int>(x), static_cast<int>(y), static_cast<int>(width),
                             static_cast<int>(height));
  if (!m_impl->allowResizing)
    setWindowResizable(window, false);
  return true;
}

bool ExampleApplication::setWindowTitle(std::string const& title) {
  m_impl->title = title;
  auto* const window = m_impl->host ? m_impl->host->window() : nullptr;
  if (window)
    window->setWindowName(title);
  return window != nullptr;
}

void ExampleApplication::setAllowWindowResizing(bool flag) {
  m_impl->allowResizing = flag;
  if (m_impl->host)
    setWindowResizable(m_impl->host->window(), flag);
}

bool ExampleApplication::getAllowWindowResizing() const {
  return m_impl->allowResizing;
}

void ExampleApplication::setEnableVSync(bool flag, bool forceUpdate) {
  bool const changed = flag != m_impl->vsync;
  m_impl->vsync = flag;
  auto* const window = m_impl->host ? m_impl->host->window() : nullptr;
  if (window && (changed || forceUpdate))
    window->setSyncToVBlank(flag);
}

bool ExampleApplication::getEnableVSync() const {
  return m_impl->vsync;
}

void ExampleApplication::setEnableOSGRenderer(bool flag) {
  m_impl->graph.setSceneVisible(flag);
}

bool ExampleApplication::getEnableOSGRenderer() const {
  return m_impl->graph.isSceneVisible();
}

zorOSG::RenderProxyFactory* ExampleApplication::getRenderProxyFactory() const {
  return &m_impl->proxies;
}

void ExampleApplication::setOsgNotifyLevel(osg::NotifySeverity severity) {
  osg::setNotifyLevel(severity);
}

// --- Camera

void ExampleApplication::getCameraHome(zor::Vec3& eye, zor::Vec3& center, zor::Vec3& up) const {
  auto const& home = m_impl->camera.home();
  eye = home.eye;
  center = home.center;
  up = home.up;
}

void ExampleApplication::setCameraHome(zor::Vec3 const& eye, zor::Vec3 const& center, zor::Vec3 const& up) {
  m_impl->camera.setHome({eye, center, up});
}

bool ExampleApplication::isCameraHomeSet() const {
  return m_impl->camera.isHomeSet();
}

osgGA::MatrixManipulator* ExampleApplication::getCameraManipulator() {
  return m_impl->host ? m_impl->host->viewer().getCameraManipulator() : nullptr;
}

osgGA::MatrixManipulator const* ExampleApplication::getCameraManipulator() const {
  return m_impl->host ? m_impl->host->viewer().getCameraManipulator() : nullptr;
}

zorOSG::CameraData ExampleApplication::getCameraData() const {
  return CameraData(getViewer());
}

void ExampleApplication::applyCameraData(zorOSG::CameraData const& cameraData) {
  m_impl->requireGraphics("applyCameraData");
  cameraData.applyTo(getViewer());
  m_impl->camera.setHome({cameraData.eye, cameraData.center, cameraData.up});
}

zor::Vec3 ExampleApplication::getViewDirection() const {
  auto const pose = m_impl->camera.current();
  return (pose.center - pose.eye).normal();
}

void ExampleApplication::setOrbitCamera(zorOSG::GeometryNode* node, double heading, double elevation,
                                        double distance, int trackerMode) {
  requireGiven("setOrbitCamera", "node", node);
  requirePositive("setOrbitCamera", "distance", distance);
  osg::Vec3d const center = worldCenter(*node);
  osg::Vec3d const direction(-std::sin(heading) * std::cos(elevation),
                             std::cos(heading) * std::cos(elevation), -std::sin(elevation));
  setOrbitCamera(node, fromOsg(center - direction * distance), fromOsg(center), zor::Vec3(0, 0, 1),
                 trackerMode);
}

void ExampleApplication::setOrbitCamera(zorOSG::GeometryNode* node, double heading, double elevation,
                                        double distance) {
  setOrbitCamera(node, heading, elevation, distance, NODE_CENTER);
}

void ExampleApplication::setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& eye,
                                        zor::Vec3 const& center, zor::Vec3 const& up, int trackerMode) {
  requireGiven("setOrbitCamera", "node", node);
  m_impl->camera.track(*node, {eye, center, up}, trackerMode);
}

void ExampleApplication::setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& eye,
                                        zor::Vec3 const& center, zor::Vec3 const& up) {
  setOrbitCamera(node, eye, center, up, NODE_CENTER);
}

void ExampleApplication::setOrbitCamera(zorOSG::GeometryNode* node, zor::Vec3 const& eye,
                                        zor::Vec3 const& center) {
  setOrbitCamera(node, eye, center, zor::Vec3(0, 0, 1), NODE_CENTER);
}

void ExampleApplication::fitSceneIntoView() {
  m_impl->camera.fit(m_impl->graph.bound());
}

void ExampleApplication::centerScene() {
  m_impl->camera.lookAt(m_impl->graph.bound());
}

zorOSG::PickHandler* ExampleApplication::getPickHandler() {
  return m_impl->pick.get();
}

zorOSG::PickHandler const* ExampleApplication::getPickHandler() const {
  return m_impl->pick.get();
}

void ExampleApplication::setDebugRenderInverseMatrix(zor::AffineMatrix4x4 const& matrix) {
  if (!matrix.isFinite() || matrix.getLinear().determinant() == 0)
    throw std::invalid_argument("setDebugRenderInverseMatrix: the matrix must be finite and have an inverse");
  m_impl->setDrawnTransform(matrix);
}

// --- Aids

void ExampleApplication::setEnableDebugRenderer(bool flag) {
  m_impl->proxies.setEnabled(flag && m_impl->host && m_impl->simulation);
}

bool ExampleApplication::getEnableDebugRenderer() const {
  return m_impl->simulation && m_impl->proxies.isEnabled();
}

void ExampleApplication::setEnableTextDebugRendering(bool flag) {
  m_impl->proxies.setNamesEnabled(flag && m_impl->host && m_impl->simulation);
}

bool ExampleApplication::getEnableTextDebugRendering() const {
  return m_impl->simulation && m_impl->proxies.areNamesEnabled();
}

void ExampleApplication::setEnableGrid(bool flag) {
  m_impl->graph.aids().setGridEnabled(flag);
}

bool ExampleApplication::getEnableGrid() const {
  return m_impl->graph.aids().isGridEnabled();
}

void ExampleApplication::setGridSize(zor::Vec2 const& size) {
  m_impl->graph.aids().setGridSize(size);
}

zor::Vec2 ExampleApplication::getGridSize() const {
  return m_impl->graph.aids().gridSize();
}

void ExampleApplication::setGridResolution(zor::Vec2u resolution) {
  m_impl->graph.aids().setGridResolution(resolution);
}

zor::Vec2u ExampleApplication::getGridResolution() const {
  return m_impl->graph.aids().gridResolution();
}

void ExampleApplication::setEnableCoordinateSystem(bool flag) {
  m_impl->graph.aids().setAxesEnabled(flag);
}

bool ExampleApplication::getEnableCoordinateSystem() const {
  return m_impl->graph.aids().areAxesEnabled();
}

void ExampleApplication::setCoordinateSystemTransform(zor::AffineMatrix4x4 const& transform) {
  m_impl->graph.aids().setTransform(transform);
}

zor::AffineMatrix4x4 ExampleApplication::getCoordinateSystemTransform() const {
  return m_impl->graph.aids().transform();
}

// --- Render targets and captures

void ExampleApplication::addRenderTarget(zorOSG::RenderTarget* rtt, osg::Node* targetSceneNode) {
  requireGiven("addRenderTarget", "rtt", rtt);
  m_impl->requireGraphics("addRenderTarget");
  osg::ref_ptr<osg::Node> const node = targetSceneNode ? targetSceneNode : getSceneDecorator();
  requireNoCircle("addRenderTarget", getRoot(), node);
  requireNoCircle("addRenderTarget", rtt->getCamera(), node);
  removeRenderTarget(rtt);
  m_impl->addTarget(*rtt, *node, m_isLoadingScene);
}

void ExampleApplication::addRenderTarget(zorOSG::RenderTarget* rtt) {
  addRenderTarget(rtt, nullptr);
}

bool ExampleApplication::removeRenderTarget(zorOSG::RenderTarget* rtt) {
  auto& targets = m_impl->targets;
  auto const found =
      std::find_if(targets.begin(), targets.end(), [rtt](auto const& added) { return added.target == rtt; });
  if (found == targets.end())
    return false;
  rtt->getCamera()->removeChild(found->node);
  getRoot()->removeChild(rtt->getCamera());
  targets.erase(found);
  return true;
}

void ExampleApplication::takeScreenShot(zor::String const& filename) {
  m_impl->captures->takeScreenShot(filename);
}

void ExampleApplication::takeScreenShot() {
  takeScreenShot("");
}

void ExampleApplication::setupVideoCaptureRenderTotexture() {
  m_impl->requireGraphics("setupVideoCaptureRenderTotexture");
  m_impl->videoTarget = m_impl->captureFromTarget(*m_impl->captures->video(), m_impl->videoTarget.get());
}

void ExampleApplication::setupImageCaptureRenderToTexture() {
  m_impl->requireGraphics("setupImageCaptureRenderToTexture");
  m_impl->imageTarget = m_impl->captureFromTarget(*m_impl->captures->images(), m_impl->imageTarget.get());
}

zorOSG::ImageCapture* ExampleApplication::getImageCapture() {
  return m_impl->captures->images();
}

zorOSG::ImageCapture const* ExampleApplication::getImageCapture() const {
  return m_impl->captures->images();
}

zorOSG::VideoFFMPEGPipeCapture* ExampleApplication::getVideoServerCapture() const {
  return m_impl->captures->video();
}

zorOSG::RenderToTexture* ExampleApplication::getVideoCaptureRendertoTexture() const {
  return m_impl->videoTarget.get();
}

void ExampleApplication::setEnableCaptureSyncWithSimulation(bool enableSync) {
  m_impl->captures->setSync(enableSync);
}

bool ExampleApplication::getEnableCaptureSyncWithSimulation() const {
  return m_impl->captures->getSync();
}

// --- Solvers

void ExampleApplication::setSolverType(SolverType t) {
  getSolverName(t); // checks it
  m_impl->solver = t;
  if (!m_impl->simulation || t == getSolverType())
    return;
  m_impl->simulation->setNumSubSteps(t == MULTI ? MULTI_SUB_STEPS : 1);
}

ExampleApplication::SolverType ExampleApplication::getSolverType() const {
  if (!m_impl->simulation)
    return m_impl->solver.value_or(ITERATIVE);
  return m_impl->simulation->getNumSubSteps() > 1 ? MULTI : ITERATIVE;
}

ExampleApplication::SolverType ExampleApplication::getSolverType(std::string name) const {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  for (SolverType const type : {MULTI, ITERATIVE})
    if (name == getSolverName(type))
      return type;
  throw std::invalid_argument("getSolverType: there is no solver '" + name + "'; MULTI and ITERATIVE are");
}

std::string ExampleApplication::getSolverName(SolverType t) const {
  if (t == MULTI)
    return "MULTI";
  if (t == ITERATIVE)
    return "ITERATIVE";
  throw std::invalid_argument("no solver type has the value " + std::to_string(static_cast<int>(t)));
}

void ExampleApplication::changeSolver() {
  setSolverType(static_cast<SolverType>((getSolverType() + 1) % NUM_SOLVERS));
}

} // namespace zorOSG
