#include "Offscreen.h"
#include "TemporaryFolder.h"

#include <zorOSG/RenderToImage.h>
#include <zorOSG/RenderToTexture.h>

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/ShapeDrawable>
#include <osgDB/ReadFile>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

using namespace zorOSG;

namespace {

/** An unlit square facing +x, 2 m wide, at a point. */
osg::ref_ptr<osg::Node> square(osg::Vec3 const& center, osg::Vec4 const& color) {
  osg::ref_ptr<osg::Geometry> quad = osg::createTexturedQuadGeometry(
      center - osg::Vec3(0.0f, 1.0f, 1.0f), osg::Vec3(0.0f, 2.0f, 0.0f), osg::Vec3(0.0f, 0.0f, 2.0f));
  osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array(osg::Array::BIND_OVERALL);
  colors->push_back(color);
  quad->setColorArray(colors);
  quad->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(quad);
  return geode;
}

class CaptureTarget : public testing::Test {
protected:
  CaptureTarget() {
    // The main view looks away, so that only the target's own camera can see the square.
    view.lookAt({0.0, 0.0, 0.0}, {1.0, 0.0, 0.0});
    scene->addChild(square({-5.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f, 1.0f}));
  }

  void put(RenderTarget& target) {
    target.setViewMatrixAsLookAt({5, 0, 0}, {0, 0, 0}, {0, 0, 1});
    target.setProjectionMatrixAsPerspective(30.0, 1.0, 1.0, 100.0);
    target.setComputeNearFarMode(RenderTarget::DO_NOT_COMPUTE_NEAR_FAR);
    target.getCamera()->addChild(scene);
    root->addChild(target.getCamera());
  }

  zorTest::Offscreen view{64, 64};
  osg::ref_ptr<osg::Group> scene = new osg::Group;
  osg::ref_ptr<osg::Group> root = new osg::Group;
};

TEST_F(CaptureTarget, shows_what_its_own_camera_sees_at_any_size) {
  for (unsigned int samples : {0u, 4u}) {
    zor::ref_ptr<RenderToImage> const target(
        new RenderToImage(100, 100, RenderTarget::COLOR_BUFFER, samples, RenderTarget::RGB));
    put(*target);
    view.render(root);
    EXPECT_EQ(target->getImage()->getColor(50, 50), osg::Vec4(1, 0, 0, 1)) << samples;
    EXPECT_EQ(target->getImage()->getColor(2, 2), osg::Vec4(0, 0, 0, 1)) << samples;

    target->setSize(zor::Vec2u(60, 40));
    view.render(root);
    EXPECT_EQ(target->getImage()->s(), 60);
    EXPECT_EQ(target->getImage()->getColor(30, 20), osg::Vec4(1, 0, 0, 1)) << samples;
    root->removeChild(target->getCamera());
  }
}

TEST_F(CaptureTarget, samples_smooth_the_edges) {
  // Turned a little, so that the square's edges cross pixels.
  osg::Vec3d const eye(5, 0.3, 0.2);
  for (unsigned int samples : {0u, 8u}) {
    zor::ref_ptr<RenderToImage> const target(
        new RenderToImage(100, 100, RenderTarget::COLOR_BUFFER, samples, RenderTarget::RGB));
    put(*target);
    target->setViewMatrixAsLookAt({eye.x(), eye.y(), eye.z()}, {0, 0, 0}, {0.1, 0.1, 1});
    view.render(root);
    int between = 0;
    for (int y = 0; y < 100; ++y) {
      for (int x = 0; x < 100; ++x) {
        float const red =
            target->getImage()->getColor(static_cast<unsigned>(x), static_cast<unsigned>(y)).r();
        between += red > 0.1f && red < 0.9f ? 1 : 0;
      }
    }
    EXPECT_EQ(between > 20, samples > 0) << between << " in-between pixels with " << samples << " samples";
    root->removeChild(target->getCamera());
  }
}

TEST_F(CaptureTarget, depth_is_that_of_the_projection) {
  zor::ref_ptr<RenderToImage> const target(new RenderToImage(50, 50, RenderTarget::DEPTH_BUFFER));
  put(*target);
  view.render(root);
  // The window depth of a point at distance d between planes n and f (OpenGL's perspective division).
  double const n = 1.0, f = 100.0, d = 10.0;
  double const expected = f * (d - n) / (d * (f - n));
  float const* depth = reinterpret_cast<float const*>(target->getImage()->data(25, 25));
  EXPECT_NEAR(*depth, expected, 1e-4);
  EXPECT_FLOAT_EQ(*reinterpret_cast<float const*>(target->getImage()->data(0, 0)), 1.0f);
  zorTest::TemporaryFolder const folder;
  EXPECT_FALSE(target->saveImage(folder.file("depth.png")));
  EXPECT_TRUE(folder.isEmpty());
}

TEST_F(CaptureTarget, texture_can_be_drawn_by_the_main_view) {
  zor::ref_ptr<RenderToTexture> const target(
      new RenderToTexture(64, 64, RenderTarget::COLOR_BUFFER, 0, RenderTarget::RGB));
  put(*target);
  osg::ref_ptr<osg::Node> screen = square({5.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f, 1.0f});
  screen->getOrCreateStateSet()->setTextureAttributeAndModes(0, target->getTexture()->getTexture());
  root->addChild(screen);
  osg::ref_ptr<osg::Image> const image = view.render(root, 2);
  EXPECT_EQ(image->getColor(32, 32), osg::Vec4(1, 0, 0, 1));
}

TEST_F(CaptureTarget, follows_a_camera_and_keeps_its_field_of_view) {
  zor::ref_ptr<RenderToImage> const target(new RenderToImage(200, 100));
  target->setReferenceCamera(&view.camera());
  target->getCamera()->addChild(scene);
  root->addChild(target->getCamera());
  view.lookAt({0.0, 0.0, 0.0}, {-1.0, 0.0, 0.0});
  view.render(root);
  EXPECT_EQ(target->getImage()->getColor(100, 50), osg::Vec4(1, 0, 0, 1));

  zor::Vec3 corner(-5, 1, 1);
  osg::Vec2d const inView = view.project({-5.0, 1.0, 1.0});
  zor::Vec2 const inTarget = target->calculateScreenCoords(corner);
  EXPECT_NEAR((inTarget[1] - 50.0) / 100.0, (inView.y() - 32.0) / 64.0, 1e-6);
  // The same angle spans as many pixels across as up.
  EXPECT_NEAR(inTarget[0] - 100.0, inTarget[1] - 50.0, 1e-6);
  zor::Vec3 behind(5, 0, 0);
  EXPECT_TRUE(std::isnan(target->calculateScreenCoords(behind)[0]));
}

TEST_F(CaptureTarget, hands_out_and_saves_its_pixels) {
  zor::ref_ptr<RenderToImage> const target(new RenderToImage(30, 20));
  put(*target);
  view.render(root);
  std::vector<unsigned char> pixels(30 * 20 * 4);
  EXPECT_FALSE(target->extractImageData(pixels.data(), static_cast<int>(pixels.size()) - 1));
  EXPECT_FALSE(target->extractImageData(nullptr, static_cast<int>(pixels.size())));
  ASSERT_TRUE(target->extractImageData(pixels.data(), static_cast<int>(pixels.size())));
  EXPECT_EQ(0, std::memcmp(pixels.data(), target->getImageData(), pixels.size()));

  zorTest::TemporaryFolder const folder;
  EXPECT_FALSE(target->saveImage(folder.file("image.unknownsuffix")));
  EXPECT_FALSE(target->saveImage(folder.file("missing/image.png")));
  EXPECT_TRUE(folder.isEmpty());
  ASSERT_TRUE(target->saveImage(folder.file("image.png")));
  osg::ref_ptr<osg::Image> const read = osgDB::readRefImageFile(folder.file("image.png"));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->s(), 30);
  EXPECT_EQ(read->getColor(15, 10), osg::Vec4(1, 0, 0, 1));
}

TEST(CaptureTargetErrors, name_what_is_wrong) {
  EXPECT_THROW(new RenderTarget(0, 10), std::invalid_argument);
  EXPECT_THROW(new RenderToImage(10, 20000), std::invalid_argument);
  EXPECT_THROW(new RenderToImage(10, 10, RenderTarget::COLOR_BUFFER, 8, RenderTarget::DEPTH_COMPONENT),
               std::invalid_argument);
  zor::ref_ptr<RenderToImage> const target(new RenderToImage(10, 10));
  EXPECT_THROW(target->setSize(0, 5), std::invalid_argument);
  EXPECT_EQ(target->getSize(), zor::Vec2u(10, 10));
  EXPECT_THROW(target->setViewMatrixFromOtherCamera(nullptr), std::invalid_argument);
  EXPECT_THROW(target->setReferenceCamera(target->getCamera()), std::invalid_argument);
  EXPECT_THROW(target->setProjectionMatrixAsPerspective(30, 1, 5, 1), std::invalid_argument);
}

} // namespace
