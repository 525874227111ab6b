#include "ExampleApplicationImpl.h"

#include "Conversion.h"
#include "CurrentApplicationScope.h"
#include "NativeWindow.h"
#include "scene/VisualDetail.h"

#include <zor/Notify.h>
#include <zorOSG/RenderToImage.h>

#include <iostream>
#include <stdexcept>

namespace zorOSG {

namespace {

constexpr zor::UInt CAPTURE_SAMPLES = 4;

} // namespace

ExampleApplication::Impl::Impl(ExampleApplication& owner)
    : app(owner), captures(std::make_unique<CaptureSet>()), pick(new PickHandler(nullptr, graph.aidsRoot())) {
  graph.aidsRoot()->addChild(proxies.node());
  graph.root()->addChild(help.node());
  graph.root()->addChild(statistics.node());
  graph.root()->addChild(errors.node());
  input = new InputAdapter({[this] { return simulation.get(); }, [this](int key) { return keyDown(key); },
                            [this](int width, int height) { resized(width, height); },
                            [this] { return pick.get(); }});
  bindKeys();
}

ExampleApplication::Impl::~Impl() {
  input->disconnect(); // the viewer, which holds it, may outlive the application in a script
  try {
    closeViewer();
  } catch (std::exception const& error) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << "closing the viewer: " << error.what() << zor::endMessage;
  }
  CurrentApplicationScope::forget(&app);
}

bool ExampleApplication::Impl::readCommandLine() {
  try {
    options = CommandLine::read(*arguments);
  } catch (std::invalid_argument const& error) {
    std::cerr << arguments->getProgramName() << ": " << error.what() << "\nTry --help." << std::endl;
    exitCode = 2;
    return false;
  }
  if (options.help) {
    std::cout << arguments->getUsage() << std::endl;
    return false;
  }
  return true;
}

void ExampleApplication::Impl::applyCommandLine() {
  if (options.stopAfter)
    app.stopAfter(*options.stopAfter);
  if (options.timeStep)
    app.setTimeStep(*options.timeStep);
  if (options.fps)
    targetFps = options.fps;
  if (options.realTime)
    realTimeSync = options.realTime;
  if (options.vsync)
    vsync = *options.vsync;
  if (options.paused)
    autoStepping = false;
  if (options.unitTests && !realTimeSync)
    realTimeSync = false;
  savesAtEnd = savesAtEnd || !options.saveScene.empty();
  setVisualDetail(static_cast<float>(options.detail));
  applyChoices();
  graph.aids().setGridEnabled(options.grid);
}

void ExampleApplication::Impl::openViewer(bool window) {
  closeViewer();
  ViewerHost::Settings settings_;
  settings_.width = options.width;
  settings_.height = options.height;
  if (options.position) {
    settings_.x = options.position->x();
    settings_.y = options.position->y();
  }
  settings_.fullScreen = options.fullScreen;
  settings_.window = window;
  settings_.vsync = vsync;
  settings_.title = title;
  host = std::make_unique<ViewerHost>(settings_);
  osgViewer::Viewer& viewer = host->viewer();
  viewer.setSceneData(graph.root());
  camera.attach(&viewer);
  pick->setCamera(viewer.getCamera());
  viewer.addEventHandler(input);
  captures->attach(&viewer);
  captures->setSimulation(simulation.get());
  osg::Vec2i const size = host->size();
  resized(size.x(), size.y());
  viewer.realize();
  if (double const scale = screenPixelScale(host->window()); scale > 1)
    graph.decorator()->setScreenPixelScale(static_cast<float>(scale));
  measureFrames(statistics.isVisible());
  if (!allowResizing)
    setWindowResizable(host->window(), false);
}

void ExampleApplication::Impl::closeViewer() {
  if (!host)
    return;
  bool const sync = captures->getSync();
  captures->finish();
  // What is still on the graphics card would go with it.
  for (auto const& added : targets)
    if (auto* const picture = dynamic_cast<RenderToImage*>(added.target.get()))
      picture->getImage();
  for (auto* const target : {&videoTarget, &imageTarget}) {
    if (target->isValid())
      app.removeRenderTarget(target->get());
    *target = nullptr;
  }
  captures = std::make_unique<CaptureSet>();
  captures->setSync(sync);
  camera.detach();
  pick->reset();
  pick->setCamera(nullptr);
  host->viewer().removeEventHandler(input);
  host.reset();
}

void ExampleApplication::Impl::requireGraphics(char const* method) const {
  if (!host)
    throw std::runtime_error(std::string(method) + ": the application has no graphics");
}

void ExampleApplication::Impl::installSimulation(zorSDK::Simulation* next) {
  simulation = next;
  settings.reset();
  pick->setSimulation(next);
  if (solver)
    app.setSolverType(*solver);
  if (timeStepSet)
    simulation->setTimeStep(timeStep);
  else
    timeStep = simulation->getTimeStep();
  captures->setSimulation(next);
}

void ExampleApplication::Impl::addTarget(RenderTarget& target, osg::Node& node, bool ofScene) {
  target.getCamera()->addChild(&node);
  graph.root()->addChild(target.getCamera());
  targets.push_back({&target, &node, ofScene});
}

zor::ref_ptr<RenderToTexture> ExampleApplication::Impl::captureFromTarget(ImageCaptureBase& capture,
                                                                          RenderToTexture* previous) {
  if (capture.getCaptureStarted())
    throw std::runtime_error("capture through a texture: not possible while it captures");
  if (previous)
    app.removeRenderTarget(previous);
  osg::Camera& mainCamera = *host->viewer().getCamera();
  mainCamera.removeFinalDrawCallback(capture.getDrawCallback());
  osg::Vec2i const size = host->size();
  zor::ref_ptr<RenderToTexture> target =
      new RenderToTexture(static_cast<zor::UInt>(size.x()), static_cast<zor::UInt>(size.y()),
                          RenderTarget::COLOR_BUFFER, CAPTURE_SAMPLES);
  target->setReferenceCamera(&mainCamera);
  target->setImageCapture(&capture);
  addTarget(*target, *graph.decorator(), false);
  return target;
}

void ExampleApplication::Impl::setDrawnTransform(zor::AffineMatrix4x4 const& simulationToDrawn) {
  proxies.setTransform(toOsg(simulationToDrawn));
  zor::AffineMatrix4x4 const toSimulation = simulationToDrawn.inverse();
  pick->setInverseTransform(toSimulation);
  if (!simulation)
    return;
  zorSDK::EventListenerRefVector const listenersThen = simulation->getListeners();
  for (auto const& listener : listenersThen)
    if (auto* const input_ = dynamic_cast<zorSDK::GuiEventListener*>(listener.get()))
      input_->setInverseTransform(toSimulation);
}

void ExampleApplication::Impl::scaleOverlays() {
  zor::Vec2i const size = graph.decorator()->getWindowSize();
  double const scale = graph.decorator()->getScreenPixelScale();
  help.resize(size[0], size[1], scale);
  statistics.resize(size[0], size[1], scale);
  errors.resize(size[0], size[1], scale);
}

void ExampleApplication::Impl::resized(int width, int height) {
  graph.decorator()->updateWindowSize(width, height);
  scaleOverlays();
}

} // namespace zorOSG
