#include "Turns.h"
#include "context/EdgeSmoothing.h" // the one private header: both draw the same picture

#include <zorCollide/Box.h>
#include <zorIO/ArgumentParser.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/ExampleApplication.h>
#include <zorOSG/OffscreenContext.h>
#include <zorOSG/SceneDecorator.h>
#include <zorSDK/Simulation.h>

#include <benchmark/benchmark.h>
#include <osg/Camera>
#include <osg/Image>
#include <osgViewer/Viewer>

#include <cmath>

// One frame of the application's loop beside one of a viewer that has nothing but the same graph and the same
// simulation. Both take turns frame by frame. The picture is small, so that what is compared is not hidden by
// filling pixels. Processor times of all threads are compared, since the renderer has some of its own.

namespace {

constexpr int WIDTH = 160;
constexpr int HEIGHT = 120;

/** Waits until a frame is drawn, by reading a pixel of it, so that it is not counted with the next. */
class Finish : public osg::Camera::DrawCallback {
public:
  void operator()(osg::RenderInfo&) const override {
    m_pixel->readPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  }

private:
  osg::ref_ptr<osg::Image> m_pixel = new osg::Image;
};

/** Boxes on a square grid that drift without meeting, or stand still. */
void addBodies(zorSDK::Simulation& simulation, osg::Group* root, int count, bool moving) {
  simulation.setUniformGravity(zor::Vec3());
  int const side = static_cast<int>(std::ceil(std::sqrt(count)));
  for (int i = 0; i < count; ++i) {
    auto* const body =
        new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(0.3, 0.3, 0.3))));
    body->setPosition(zor::Vec3(i % side - 0.5 * side, i / side - 0.5 * side, 0));
    if (moving)
      body->setVelocity(zor::Vec3(0, 0, 1e-3 * (i % 7 - 3)));
    else
      body->setMotionControl(zor::RigidBody::STATIC);
    simulation.add(body);
    zorOSG::createVisual(body, root);
  }
}

osg::ref_ptr<osgViewer::Viewer> makeBareViewer(osg::Node* scene, osg::Camera const& like) {
  osg::ref_ptr<osgViewer::Viewer> viewer = new osgViewer::Viewer;
  viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
  viewer->setLightingMode(osg::View::NO_LIGHT);
  osg::Camera& camera = *viewer->getCamera();
  camera.setGraphicsContext(zorOSG::createOffscreenContext(WIDTH, HEIGHT));
  camera.setViewport(0, 0, WIDTH, HEIGHT);
  camera.setProjectionMatrix(like.getProjectionMatrix());
  camera.setViewMatrix(like.getViewMatrix());
  zorOSG::smoothEdges(camera);
  camera.addFinalDrawCallback(new Finish);
  viewer->setCameraManipulator(nullptr);
  viewer->setSceneData(scene);
  viewer->realize();
  // The decorator surveys its scene once a frame, and must not take two viewers' frames for one.
  viewer->getViewerFrameStamp()->setFrameNumber(1u << 20);
  return viewer;
}

void drawFrames(benchmark::State& state) {
  auto const count = static_cast<int>(state.range(0));
  bool const moving = state.range(1) != 0;
  zor::ref_ptr<zorOSG::ExampleApplication> const app = new zorOSG::ExampleApplication;
  zor::ref_ptr<zorIO::ArgumentParser> const arguments =
      new zorIO::ArgumentParser({"bench", "--offscreen", "--noRealTime",
                                 "--window=" + std::to_string(WIDTH) + "x" + std::to_string(HEIGHT)});
  if (!app->init(arguments.get())) {
    state.SkipWithError("no graphics");
    return;
  }
  app->initSimulation();
  addBodies(*app->getSimulation(), app->getSceneRoot(), count, moving);
  double const distance = 1.2 * std::sqrt(count);
  app->setCameraHome(zor::Vec3(0, -distance, distance), zor::Vec3());
  app->getCamera()->addFinalDrawCallback(new Finish);
  auto const bare = makeBareViewer(app->getSceneDecorator(), *app->getCamera());
  zor::HighAccuracyTimer timer(true);
  Turns turns;
  auto const drawOurs = [&] { app->executeOneStepWithGraphics(timer); };
  auto const drawTheirs = [&] {
    app->getSimulation()->stepForward();
    bare->frame();
  };
  for (int i = 0; i < 3; ++i) { // compiles shaders, fills buffers
    drawOurs();
    drawTheirs();
  }
  for ([[maybe_unused]] auto _ : state) {
    double const before = turns.ours.wall;
    turns.take(drawOurs, drawTheirs);
    state.SetIterationTime(turns.ours.wall - before);
  }
  auto const frames = static_cast<double>(state.iterations());
  state.counters["frames_per_second"] = frames / turns.ours.wall;
  state.counters["bare_frames_per_second"] = frames / turns.theirs.wall;
  state.counters["overhead_percent"] = turns.overheadPercent();
}

} // namespace

BENCHMARK(drawFrames)
    ->ArgNames({"bodies", "moving"})
    ->ArgsProduct({{100, 1000, 10000}, {0, 1}})
    ->UseManualTime()
    ->MinTime(3)
    ->Unit(benchmark::kMillisecond);
