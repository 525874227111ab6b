#include "ApplicationFixture.h"
#include "TemporaryFolder.h"

#include <zorOSG/CameraData.h>
#include <zorOSG/ImageCapture.h>
#include <zorOSG/RenderToTexture.h>
#include <zorOSG/SceneDecorator.h>
#include <zorOSG/VideoFFMPEGPipeCapture.h>

#include <osgDB/ReadFile>
#include <osgGA/NodeTrackerManipulator>

#include <cmath>
#include <stdexcept>

using namespace zorTest;
using Keys = osgGA::GUIEventAdapter;

class ApplicationPanels : public Application {
protected:
  void SetUp() override {
    ASSERT_TRUE(init({"--offscreen", "--window=640x480"}));
    app->initSimulation();
    app->getSceneDecorator()->setBackgroundColor(zor::Vec3(1, 1, 1));
    body = addRedBox(app->getSimulation(), app->getSceneRoot());
    body->setMotionControl(zor::RigidBody::STATIC);
    app->setCameraHome(zor::Vec3(0, -8, 0), zor::Vec3(0, 0, 0));
  }

  void runFrames(int count) {
    stopAtFrame(count);
    app->run();
  }

  osg::ref_ptr<osg::Image> picture(std::string const& name) {
    app->takeScreenShot(folder.file(name + ".png"));
    runFrames(2);
    return osgDB::readRefImageFile(folder.file(name + ".png"));
  }

  /** \return pixels of a part of the picture that are near to a colour; y counts from below */
  static int count(osg::Image const& image, osg::Vec4 const& color, int left, int right) {
    int found = 0;
    for (int y = 0; y < image.t(); ++y)
      for (int x = left; x < right; ++x)
        found += (image.getColor(x, y) - color).length() < 0.25f ? 1 : 0;
    return found;
  }

  TemporaryFolder folder;
  zor::RigidBody* body = nullptr;
};

osg::Vec4 const DARK(0.2f, 0.22f, 0.25f, 1);

TEST_F(ApplicationPanels, lie_on_their_sides_and_fit_into_the_window) {
  auto const plain = picture("plain");
  EXPECT_EQ(count(*plain, DARK, 0, 640), 0);
  press('h');
  runFrames(2);
  auto const help = picture("help");
  EXPECT_GT(count(*help, DARK, 0, 320), 20000);
  press('h');
  press('i');
  runFrames(4);
  auto const statistics = picture("statistics");
  EXPECT_LT(count(*statistics, DARK, 0, 200), 100);
  EXPECT_GT(count(*statistics, DARK, 400, 640), 20000);
  osg::Vec4 const drawTime(0.38f, 0.66f, 1.0f, 1);
  EXPECT_GT(count(*statistics, drawTime, 400, 640), 10) << "bars of the graph or their legend";

  app->getSceneDecorator()->setScreenPixelScale(1.5f);
  auto const large = picture("large");
  EXPECT_GT(count(*large, DARK, 0, 640), 1.5 * count(*statistics, DARK, 0, 640));
  app->getSceneDecorator()->setScreenPixelScale(20.0f);
  auto const fitted = picture("fitted");
  EXPECT_GT(count(*fitted, DARK, 0, 640), 50000);
}

TEST_F(ApplicationPanels, keys_go_through_shadow_methods_views_and_aids) {
  for (int method : {1, 2, 3, 4, 5, 6, 0}) {
    press('l');
    runFrames(2);
    EXPECT_EQ(app->getSceneDecorator()->getShadowMethod(), method);
  }
  press('V');
  runFrames(2);
  app->setCameraHome(zor::Vec3(8, 0, 1), zor::Vec3(0, 0, 0));
  press('V');
  press('v');
  runFrames(2);
  EXPECT_TRUE(app->getCameraData().eye.equals(zor::Vec3(0, -8, 0), 1e-3)) << "the oldest first";
  press('v');
  runFrames(2);
  EXPECT_TRUE(app->getCameraData().eye.equals(zor::Vec3(8, 0, 1), 1e-3));
  press('a');
  press('o');
  runFrames(2);
  EXPECT_TRUE(app->getEnableCoordinateSystem());
  EXPECT_FALSE(app->getEnableOSGRenderer());
}

TEST_F(ApplicationPanels, flying_moves_with_the_arrow_keys) {
  press('m');
  runFrames(2);
  zor::Vec3 const before = app->getCameraData().eye;
  EXPECT_TRUE(before.equals(zor::Vec3(0, -8, 0), 1e-3)) << "it starts where the camera is";
  events().keyPress(Keys::KEY_Up);
  runFrames(30);
  events().keyRelease(Keys::KEY_Up);
  runFrames(2);
  zor::Vec3 const after = app->getCameraData().eye;
  EXPECT_GT(after.y(), before.y() + 0.05);
  EXPECT_NEAR(after.x(), 0, 1e-3);
  runFrames(10);
  EXPECT_TRUE(app->getCameraData().eye.equals(after, 1e-6)) << "the key is up";
  press('m');
  runFrames(2);
  EXPECT_TRUE(app->getCameraData().eye.equals(after, 1e-3));
}

TEST_F(ApplicationPanels, the_body_under_the_mouse_is_followed_until_it_is_let_go) {
  runFrames(1);
  events().mouseMotion(320, 240);
  press('t');
  runFrames(2);
  EXPECT_NE(dynamic_cast<osgGA::NodeTrackerManipulator*>(app->getCameraManipulator()), nullptr);
  zor::Vec3 const before = app->getCameraData().eye;
  body->setPosition(zor::Vec3(3, 0, 0));
  runFrames(3);
  EXPECT_NEAR(zorOSG::CameraData(app->getCamera()).eye.x() - before.x(), 3, 0.1);
  press('t');
  runFrames(2);
  EXPECT_EQ(dynamic_cast<osgGA::NodeTrackerManipulator*>(app->getCameraManipulator()), nullptr);
}

TEST_F(ApplicationPanels, captures_from_a_target_show_the_scene_without_panels) {
  EXPECT_EQ(app->getVideoCaptureRendertoTexture(), nullptr);
  app->setupVideoCaptureRenderTotexture();
  ASSERT_NE(app->getVideoCaptureRendertoTexture(), nullptr);
  EXPECT_EQ(app->getVideoCaptureRendertoTexture()->getSize(), zor::Vec2u(640u, 480u));
  app->setupImageCaptureRenderToTexture();
  app->setupImageCaptureRenderToTexture(); // again: the first target goes
  zorOSG::ImageCapture& images = *app->getImageCapture();
  images.setDirectoryPath(folder.file("frames"));
  images.setPostfix("png");
  images.setMaxImages(1);
  press('h');
  runFrames(3);
  images.startCapture();
  EXPECT_THROW(app->setupImageCaptureRenderToTexture(), std::runtime_error);
  runFrames(3);
  images.stopCapture();
  std::vector<std::string> files;
  for (auto const& entry : std::filesystem::directory_iterator(folder.file("frames")))
    files.push_back(entry.path().string());
  ASSERT_EQ(files.size(), 1u);
  auto const image = osgDB::readRefImageFile(files[0]);
  EXPECT_EQ(count(*image, DARK, 0, 640), 0) << "no help in the picture";
  osg::Vec4 const middle = image->getColor(320, 240);
  EXPECT_GT(middle.r(), 2 * middle.g());
  app = new zorOSG::ExampleApplication;
  EXPECT_THROW(app->setupVideoCaptureRenderTotexture(), std::runtime_error);
}

TEST_F(ApplicationPanels, a_key_of_a_scene_means_nothing_else) {
  app->addScene([](zorSDK::Simulation*, zorOSG::ExampleApplication* a) { return a->getSceneRoot(); }, 'g');
  press('g');
  runFrames(2);
  EXPECT_FALSE(app->getEnableGrid());
  EXPECT_TRUE(app->getScene());
}
