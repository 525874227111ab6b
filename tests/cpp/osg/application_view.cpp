#include "ApplicationFixture.h"
#include "EdgeScene.h"
#include "TemporaryFolder.h"

#include <zorOSG/ImageCapture.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/RenderToImage.h>
#include <zorOSG/SceneDecorator.h>

#include <osg/Camera>
#include <osgDB/ReadFile>

#include <cmath>
#include <fstream>
#include <limits>
#include <stdexcept>

using namespace zorTest;

namespace {

std::size_t countFiles(std::string const& folder) {
  std::size_t count = 0;
  for ([[maybe_unused]] auto const& entry : std::filesystem::directory_iterator(folder))
    ++count;
  return count;
}

} // namespace

class ApplicationView : public Application {
protected:
  TemporaryFolder folder;
};

TEST_F(ApplicationView, draws_the_scene_off_screen_and_takes_screen_shots) {
  ASSERT_TRUE(init({"--offscreen", "--window=120x90", "--screenShot", folder.file("last.png")}));
  EXPECT_TRUE(app->hasRenderContext());
  EXPECT_TRUE(app->hasOffscreenWindow());
  EXPECT_EQ(app->getHWND(), 0);
  app->initSimulation();
  addRedBox(app->getSimulation(), app->getSceneRoot())->setMotionControl(zor::RigidBody::STATIC);
  app->setCameraHome(zor::Vec3(3, -3, 3), zor::Vec3(0, 0, 0));
  onFrame({}, [this, frame = 0](auto* a) mutable {
    if (++frame == 1)
      a->takeScreenShot(folder.file("first.png"));
    if (frame == 3)
      a->stop();
  });
  EXPECT_EQ(app->run(), 0);
  for (char const* name : {"first.png", "last.png"}) {
    osg::ref_ptr<osg::Image> const image = osgDB::readRefImageFile(folder.file(name));
    ASSERT_TRUE(image) << name;
    EXPECT_EQ(image->s(), 120);
    EXPECT_EQ(image->t(), 90);
    osg::Vec4 const middle = image->getColor(60, 45);
    EXPECT_GT(middle.r(), 2 * middle.g()) << "the red box is in the middle";
    osg::Vec4 const corner = image->getColor(2, 2);
    EXPECT_LT(corner.r(), 1.5 * corner.g()) << "the background is not red";
  }
}

TEST_F(ApplicationView, captures_images_in_step_with_simulation_time) {
  ASSERT_TRUE(init({"--offscreen", "--window=40x30", "--stopAfter=0.5", "--captureFps=20", "--captureImages",
                    folder.file("frames")}));
  int frames = 0;
  onFrame({}, [&frames](auto*) { ++frames; });
  EXPECT_EQ(app->run(), 0);
  EXPECT_EQ(countFiles(folder.file("frames")), 10u) << "20 a second for half a second of simulation";
  EXPECT_LE(frames, 11) << "what is not stored is not drawn";
}

TEST_F(ApplicationView, shows_no_stair_steps_off_screen) {
  ASSERT_TRUE(init({"--offscreen", "--window=80x60"}));
  app->initSimulation();
  app->getSceneRoot()->addChild(whiteTriangle({-1.0f, 0.0f, -0.8f}, {1.0f, 0.0f, -0.5f}, {0.2f, 0.0f, 0.9f}));
  app->getSceneDecorator()->setBackgroundColor(zor::Vec3(0, 0, 0));
  app->setCameraHome(zor::Vec3(0, -3, 0), zor::Vec3(0, 0, 0));
  app->takeScreenShot(folder.file("edges.png"));
  stopAtFrame(2);
  EXPECT_EQ(app->run(), 0);
  osg::ref_ptr<osg::Image> const image = osgDB::readRefImageFile(folder.file("edges.png"));
  ASSERT_TRUE(image);
  int const between = countShades(*image, 0.15, 0.85);
  EXPECT_GT(countShades(*image, 0.95), 300);
  EXPECT_GT(between, 30) << "pixels on the three edges";
  EXPECT_LT(between, 250) << "edges, not a blurred picture";
}

TEST_F(ApplicationView, says_what_cannot_be_written) {
  std::ofstream(folder.file("file")) << "in the way";
  ASSERT_TRUE(init({"--offscreen", "--window=40x30", "--captureImages", folder.file("file/frames")}));
  EXPECT_THROW(app->run(), std::runtime_error);
  EXPECT_THROW(app->takeScreenShot(folder.file("file/shot.png")), std::runtime_error);
  EXPECT_THROW(app->takeScreenShot(folder.file("shot.nosuchformat")), std::runtime_error);
  EXPECT_EQ(countFiles(folder.path()), 1u);
}

TEST_F(ApplicationView, camera_data_survives_a_round_trip) {
  ASSERT_TRUE(init());
  EXPECT_FALSE(app->isCameraHomeSet());
  app->setCameraHome(zor::Vec3(1, -5, 2), zor::Vec3(0, 1, 0));
  EXPECT_TRUE(app->isCameraHomeSet());
  zorOSG::CameraData data = app->getCameraData();
  EXPECT_TRUE(data.valid);
  EXPECT_TRUE(data.eye.equals(zor::Vec3(1, -5, 2), 1e-6)) << data.eye;
  EXPECT_TRUE(data.center.equals(zor::Vec3(0, 1, 0), 1e-6)) << data.center;
  EXPECT_NEAR(data.aspectRatio, 80.0 / 60, 1e-6);
  EXPECT_TRUE(app->getViewDirection().equals((data.center - data.eye).normal(), 1e-6));

  data.fieldOfView = 60;
  data.eye = zor::Vec3(0, -9, 3);
  app->applyCameraData(data);
  zor::Vec3 eye, center, up;
  app->getCameraHome(eye, center, up);
  EXPECT_TRUE(eye.equals(data.eye)) << eye;
  zorOSG::CameraData const fromCamera(app->getCamera());
  EXPECT_NEAR(fromCamera.fieldOfView, 60, 1e-6);
  EXPECT_TRUE(fromCamera.eye.equals(data.eye, 1e-6)) << fromCamera.eye;

  EXPECT_THROW(app->setCameraHome(data.eye, data.eye), std::invalid_argument);
  EXPECT_THROW(app->setCameraHome(zor::Vec3(0, 0, 5), zor::Vec3(0, 0, 0), zor::Vec3(0, 0, 1)),
               std::invalid_argument);
  EXPECT_THROW(app->setCameraHome(zor::Vec3(std::nan(""), 0, 5), zor::Vec3(0, 0, 0)), std::invalid_argument);
  EXPECT_THROW(app->applyCameraData(zorOSG::CameraData(static_cast<osg::Camera*>(nullptr))),
               std::runtime_error);
  EXPECT_TRUE(app->getCameraData().eye.equals(data.eye, 1e-6)) << "what fails changes nothing";
}

TEST_F(ApplicationView, fits_the_scene_and_follows_a_node) {
  ASSERT_TRUE(init());
  app->initSimulation();
  zor::RigidBody* const body = addRedBox(app->getSimulation(), app->getSceneRoot());
  body->setPosition(zor::Vec3(0, 0, 3));
  app->setCameraHome(zor::Vec3(0, -100, 3), zor::Vec3(0, 0, 3));
  stopAtFrame(1);
  app->run();
  zor::Vec3 const direction = app->getViewDirection();
  app->fitSceneIntoView();
  double const distance = (app->getCameraData().eye - body->getPosition()).length();
  EXPECT_GT(distance, 1);
  EXPECT_LT(distance, 5) << "a box of one metre";
  EXPECT_TRUE(app->getViewDirection().equals(direction, 1e-6));

  auto* const node = zorOSG::findGeometryNode(body->getGeometries()[0].get(), app->getSceneRoot());
  ASSERT_NE(node, nullptr);
  app->setOrbitCamera(node, 0, 0, 7);
  EXPECT_TRUE(app->getViewDirection().equals(zor::Vec3(0, 1, 0), 1e-3)) << app->getViewDirection();
  zor::Vec3 const before = app->getCameraData().eye;
  body->setPosition(zor::Vec3(4, 0, 3));
  body->setVelocity(zor::Vec3());
  stopAtFrame(2);
  app->run();
  zor::Vec3 const after = zorOSG::CameraData(app->getCamera()).eye;
  EXPECT_NEAR(after.x() - before.x(), 4, 0.05) << "the camera moves with the body";
  EXPECT_THROW(app->setOrbitCamera(nullptr, 0, 0, 7), std::invalid_argument);
  EXPECT_THROW(app->setOrbitCamera(node, 0, 0, -1), std::invalid_argument);
}

TEST_F(ApplicationView, renders_targets_of_its_own_and_lets_them_go) {
  ASSERT_TRUE(init());
  app->initSimulation();
  addRedBox(app->getSimulation(), app->getSceneRoot())->setMotionControl(zor::RigidBody::STATIC);
  zor::ref_ptr<zorOSG::RenderToImage> const target = new zorOSG::RenderToImage(50, 40);
  target->setViewMatrixAsLookAt(zor::Vec3(3, -3, 3), zor::Vec3(0, 0, 0), zor::Vec3(0, 0, 1));
  target->setProjectionMatrixAsPerspective(40, 1.25, 0.1, 100);
  app->addRenderTarget(target.get());
  stopAtFrame(2);
  app->run();
  osg::Vec4 const middle = target->getImage()->getColor(25, 20);
  EXPECT_GT(middle.r(), 2 * middle.g());
  EXPECT_TRUE(app->removeRenderTarget(target.get()));
  EXPECT_FALSE(app->removeRenderTarget(target.get()));
  EXPECT_EQ(target->getCamera()->getNumParents(), 0u);
}

TEST_F(ApplicationView, aids_and_settings_check_what_they_are_given) {
  initWithout();
  EXPECT_FALSE(app->getEnableGrid());
  app->setEnableGrid(true);
  app->setEnableCoordinateSystem(true);
  app->setGridSize(zor::Vec2(4, 6));
  app->setGridResolution(zor::Vec2u(4, 3));
  EXPECT_NEAR(app->getSceneZorOSGRoot()->getBound().radius(), std::sqrt(13.0), 0.2);
  EXPECT_THROW(app->setGridSize(zor::Vec2(0, 1)), std::invalid_argument);
  EXPECT_THROW(app->setGridResolution(zor::Vec2u(0u, 1u)), std::invalid_argument);
  EXPECT_THROW(app->setTimeStep(0), std::invalid_argument);
  EXPECT_THROW(app->setTargetFPS(std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
  EXPECT_EQ(app->getSolverType("iterative"), zorOSG::ExampleApplication::ITERATIVE);
  EXPECT_THROW(app->getSolverType("fastest"), std::invalid_argument);
  EXPECT_THROW(app->initScene(nullptr), std::invalid_argument);
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  app->initScene(root.get());
  EXPECT_EQ(app->getRoot(), root.get());
  EXPECT_EQ(app->getSceneSwitch()->getNumParents(), 1u);
}
