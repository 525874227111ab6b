// What pictures of a whole application cannot show: skies that nothing meets, outlines without a stencil
// buffer, outlines of single drawables, callbacks that others have set.

#include "DecoratorScene.h"

#include <zorOSG/RenderState.h>
#include <zorOSG/SkySphere.h>

#include <osg/ComputeBoundsVisitor>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>

#include <gtest/gtest.h>

using zorTest::DecoratorScene;

namespace {

zor::Vector<osg::ref_ptr<osg::Image>> sixImages(osg::Vec4 const& color) {
  zor::Vector<osg::ref_ptr<osg::Image>> images;
  for (int i = 0; i < 6; ++i) {
    osg::ref_ptr<osg::Image> const image = new osg::Image;
    image->allocateImage(2, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (unsigned int pixel = 0; pixel < 4; ++pixel)
      image->setColor(color, pixel % 2, pixel / 2);
    images.push_back(image);
  }
  return images;
}

int countYellow(osg::Image const& image) {
  int count = 0;
  for (int y = 0; y < image.t(); ++y)
    for (int x = 0; x < image.s(); ++x) {
      osg::Vec4 const color = image.getColor(static_cast<unsigned int>(x), static_cast<unsigned int>(y));
      count += color.r() > 0.8f && color.g() > 0.8f && color.b() < 0.3f ? 1 : 0;
    }
  return count;
}

class CountedCallback : public osg::NodeCallback {
public:
  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    ++calls;
    traverse(node, visitor);
  }
  int calls = 0;
};

} // namespace

TEST(SceneSky, isMetByNoRayAndHasNoBound) {
  auto images = sixImages({0.0f, 0.0f, 1.0f, 1.0f});
  osg::ref_ptr<osg::Geode> const sky = zorOSG::createSkySphere("sky", images, 10.0f);
  EXPECT_FALSE(sky->getBound().valid());
  osg::ComputeBoundsVisitor bounds;
  sky->accept(bounds);
  EXPECT_FALSE(bounds.getBoundingBox().valid());
  osg::ref_ptr<osgUtil::LineSegmentIntersector> const ray =
      new osgUtil::LineSegmentIntersector(osg::Vec3d(0, 0, 0), osg::Vec3d(100, 10, 1));
  osgUtil::IntersectionVisitor visitor(ray);
  sky->accept(visitor);
  EXPECT_FALSE(ray->containsIntersections());
}

TEST(SceneSky, leavesDepthsOfTheViewAlone) {
  DecoratorScene scene;
  scene.decorator->addChild(zorTest::box(1.0f, {}));
  osg::Camera& camera = scene.view.camera();
  scene.render();
  auto const depths = [&] {
    double angle = 0, aspect = 0, nearest = 0, farthest = 0;
    EXPECT_TRUE(camera.getProjectionMatrixAsPerspective(angle, aspect, nearest, farthest));
    return osg::Vec2d(nearest, farthest);
  };
  osg::Vec2d const before = depths();
  auto images = sixImages({0.0f, 0.0f, 1.0f, 1.0f});
  scene.decorator->addChild(zorOSG::createSkySphere("sky", images, 5000.0f));
  auto const image = scene.render();
  EXPECT_GT(image->getColor(5, 5).b(), 0.95f);
  EXPECT_LT((depths() - before).length(), 1e-3);
  camera.setProjectionMatrixAsOrtho(-3.0, 3.0, -2.0, 2.0, 1.0, 100.0);
  EXPECT_GT(scene.render()->getColor(5, 5).b(), 0.95f) << "without perspective";
}

TEST(SceneOutline, isDrawnWithoutAStencilBufferToo) {
  DecoratorScene scene;
  scene.decorator->setShadowMethod(zorOSG::SceneDecorator::NO_SHADOWS);
  auto const box = zorTest::box(2.0f, {});
  scene.decorator->addChild(box);
  osg::ref_ptr<osg::Image> const image = new osg::Image;
  image->allocateImage(200, 150, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  osg::ref_ptr<osg::Camera> const target = new osg::Camera;
  target->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  target->setViewMatrix(scene.view.camera().getViewMatrix());
  target->setProjectionMatrix(scene.view.camera().getProjectionMatrix());
  target->setViewport(0, 0, 200, 150);
  target->setRenderOrder(osg::Camera::PRE_RENDER);
  target->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
  target->attach(osg::Camera::COLOR_BUFFER, image);
  target->addChild(scene.decorator);
  zorOSG::setEnableOutline(box, true, zorRender::Color(1, 1, 0), 3.0f);
  scene.view.render(target, 2);
  zorTest::keepImage(*image, "outline_without_stencil");
  EXPECT_GT(countYellow(*image), 100);
  EXPECT_LT(countYellow(*image), 900);
  osg::Vec4 const middle = image->getColor(100, 75);
  EXPECT_NEAR(middle.r(), middle.b(), 0.05) << "the box is in front of its line";
}

TEST(SceneOutline, ofADrawableAndBesideOtherCallbacks) {
  DecoratorScene scene;
  osg::ref_ptr<osg::Geode> const geode = new osg::Geode;
  osg::ref_ptr<osg::ShapeDrawable> const ball = new osg::ShapeDrawable(new osg::Sphere({}, 1.0f));
  geode->addDrawable(ball);
  scene.decorator->addChild(geode);
  osg::ref_ptr<CountedCallback> const first = new CountedCallback, last = new CountedCallback;
  geode->addCullCallback(first);
  EXPECT_TRUE(zorOSG::setEnableOutline(geode, true));
  geode->addCullCallback(last);
  int const around = countYellow(*scene.render());
  EXPECT_GT(around, 50);
  zorOSG::setEnableOutline(geode, false);
  EXPECT_EQ(0, countYellow(*scene.render()));
  EXPECT_TRUE(zorOSG::setEnableOutline(ball, true));
  EXPECT_NEAR(around, countYellow(*scene.render()), 10);
  EXPECT_GE(first->calls, 3);
  EXPECT_GE(last->calls, 3);
}
