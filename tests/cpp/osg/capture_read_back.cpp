#include "Offscreen.h"
#include "TemporaryFolder.h"

#include <zorOSG/ImageCapture.h>
#include <zorOSG/RenderToImage.h>
#include <zorSDK/Simulation.h>

#include <osg/Group>
#include <osg/ShapeDrawable>
#include <osg/ValueObject>
#include <osgDB/ReadFile>

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

using namespace zorOSG;

namespace {

/** Colour of a frame, told by its number. */
osg::Vec4 colorOf(int frame) {
  return {static_cast<float>(frame % 5) / 4.0f, static_cast<float>(frame % 3) / 2.0f, 0.6f, 1.0f};
}

void expectColor(osg::Vec4 const& found, osg::Vec4 const& expected, std::string const& where) {
  for (unsigned int c = 0; c < 3; ++c)
    EXPECT_NEAR(found[c], expected[c], 1.0f / 255.0f) << where;
}

/** With the driver's own way of reading, directly, and through a buffer. */
class CaptureReadBack : public testing::TestWithParam<char const*> {
protected:
  CaptureReadBack() { setenv("ZOR_READ_BACK", GetParam(), 1); }
  ~CaptureReadBack() override { unsetenv("ZOR_READ_BACK"); }

  zor::ref_ptr<RenderToImage> add(zor::UInt width, zor::UInt height, unsigned int samples = 0) {
    zor::ref_ptr<RenderToImage> const target(
        new RenderToImage(width, height, RenderTarget::COLOR_BUFFER, samples));
    root->addChild(target->getCamera());
    return target;
  }

  void draw(int frame, std::initializer_list<RenderTarget*> targets) {
    int offset = 0;
    for (RenderTarget* const target : targets)
      target->getCamera()->setClearColor(colorOf(frame + offset++));
    view.render(root);
  }

  zorTest::Offscreen view{32, 32};
  osg::ref_ptr<osg::Group> root = new osg::Group;
};

TEST_P(CaptureReadBack, gives_the_frame_asked_for_however_it_is_asked) {
  auto const asked = add(20, 10), watched = add(30, 16, 4), known = add(8, 8), late = add(12, 12);
  osg::ref_ptr<osg::Image> const held = watched->getImage();
  unsigned char const* const data = known->getImageData();
  for (int frame = 0; frame < 12; ++frame) {
    draw(frame, {asked.get(), watched.get(), known.get(), late.get()});
    std::string const where = std::string(GetParam()) + ", frame " + std::to_string(frame);
    if (frame % 3 == 0)
      expectColor(asked->getImage()->getColor(19, 9), colorOf(frame), where);
    expectColor(held->getColor(29, 15), colorOf(frame + 1), where);
    expectColor({static_cast<float>(data[0]) / 255.0f, static_cast<float>(data[1]) / 255.0f, 0.6f, 1.0f},
                colorOf(frame + 2), where);
  }
  std::vector<unsigned char> pixels(12 * 12 * 4);
  ASSERT_TRUE(late->extractImageData(pixels.data(), static_cast<int>(pixels.size())));
  EXPECT_NEAR(pixels[0] / 255.0f, colorOf(11 + 3)[0], 1.0f / 255.0f);
}

TEST_P(CaptureReadBack, leaves_pixels_where_they_are_until_somebody_wants_them) {
  auto const target = add(16, 16);
  draw(0, {target.get()});
  unsigned int const untouched = target->getImage()->getModifiedCount();
  for (int frame = 1; frame < 6; ++frame)
    draw(frame, {target.get()});
  osg::ref_ptr<osg::Image> const image = target->getImage();
  // One more, in case that somebody asks after every frame.
  EXPECT_LE(image->getModifiedCount(), untouched + 2) << "frames were read that nobody has asked for";
  expectColor(image->getColor(3, 3), colorOf(5), GetParam());
}

TEST_P(CaptureReadBack, a_new_size_leaves_earlier_images_alone) {
  auto const target = add(40, 30, 4);
  draw(1, {target.get()});
  osg::ref_ptr<osg::Image> const before = target->getImage();
  for (auto const& [width, height] : {std::pair{10u, 50u}, {64u, 64u}, {3u, 1u}}) {
    target->setSize(width, height);
    draw(2, {target.get()});
    osg::Image const& now = *target->getImage();
    ASSERT_EQ(now.s(), static_cast<int>(width));
    ASSERT_EQ(now.t(), static_cast<int>(height));
    expectColor(now.getColor(width - 1, height - 1), colorOf(2), GetParam());
  }
  EXPECT_EQ(before->s(), 40);
  expectColor(before->getColor(39, 29), colorOf(1), GetParam());
}

TEST_P(CaptureReadBack, depth_comes_with_the_projection_it_was_drawn_with) {
  zor::ref_ptr<RenderToImage> const target(new RenderToImage(33, 33, RenderTarget::DEPTH_BUFFER));
  target->setViewMatrixAsLookAt({20, 0, 0}, {0, 0, 0}, {0, 0, 1});
  osg::ref_ptr<osg::Geode> const ball = new osg::Geode;
  ball->addDrawable(new osg::ShapeDrawable(new osg::Sphere({}, 2.0f)));
  target->getCamera()->addChild(ball);
  root->addChild(target->getCamera());
  for (bool const perspective : {true, false}) {
    if (perspective)
      target->setProjectionMatrixAsPerspective(30, 1, 0.1, 1000);
    else
      target->setProjectionMatrixAsOrtho(-3, 3, -3, 3, 0.1, 1000);
    view.render(root);
    osg::Image const& image = *target->getImage();
    osg::Matrixd used;
    ASSERT_TRUE(image.getUserValue("projection", used));
    EXPECT_NE(used, target->getCamera()->getProjectionMatrix()) << "near and far plane are to fit the scene";
    float const depth = *reinterpret_cast<float const*>(image.data(16, 16));
    osg::Vec3d const point = osg::Vec3d(0, 0, 2.0 * depth - 1.0) * osg::Matrixd::inverse(used);
    EXPECT_NEAR(-point.z(), 18.0, 0.02) << perspective;
  }
}

TEST_P(CaptureReadBack, captures_have_every_frame_by_the_time_they_stop) {
  zorTest::TemporaryFolder const folder;
  zor::ref_ptr<zorSDK::Simulation> const simulation(new zorSDK::Simulation);
  zor::ref_ptr<ImageCapture> const capture(new ImageCapture(simulation.get()));
  capture->setFps(1.0 / simulation->getTimeStep());
  capture->setPostfix("png");
  auto const target = add(16, 12);
  target->setImageCapture(capture.get());
  auto const take = [&](std::string const& name, int limit) {
    capture->setDirectoryPath(folder.file(name));
    capture->setMaxImages(limit);
    capture->startCapture();
    for (int frame = 0; frame < 7; ++frame) {
      draw(frame, {target.get()});
      simulation->stepForward();
    }
    bool const stopped = capture->stopCapture();
    EXPECT_EQ(stopped, limit < 0) << "at its limit it stops by itself";
    for (int frame = 0; frame < (limit < 0 ? 7 : limit); ++frame) {
      std::string const file = folder.file(name + "/image_0000" + std::to_string(frame) + ".png");
      osg::ref_ptr<osg::Image> const image = osgDB::readRefImageFile(file);
      ASSERT_TRUE(image) << file;
      expectColor(image->getColor(15, 11), colorOf(frame), file);
    }
  };
  take("all", -1);
  take("some", 4);
}

TEST_P(CaptureReadBack, outlives_the_callbacks_that_somebody_replaces) {
  struct Count : osg::Camera::DrawCallback {
    void operator()(osg::RenderInfo&) const override { ++calls; }
    mutable int calls = 0;
  };
  osg::ref_ptr<Count> const count = new Count;
  {
    auto const target = add(16, 16), other = add(16, 16);
    target->getCamera()->setFinalDrawCallback(new Count);
    for (int i = 0; i < 2; ++i) // twice in one, once in another
      target->addPreRenderCallback(count);
    other->addPreRenderCallback(count);
    osg::ref_ptr<osg::Image> const held = target->getImage();
    draw(4, {target.get(), other.get()});
    expectColor(held->getColor(0, 0), colorOf(4), GetParam());
    EXPECT_EQ(count->calls, 2);
  }
  view.render(root); // the cameras are still there, the targets are not
  EXPECT_EQ(count->calls, 4);
}

INSTANTIATE_TEST_SUITE_P(Ways, CaptureReadBack, testing::Values("direct", "buffer"),
                         [](auto const& way) { return std::string(way.param); });

} // namespace
