#include "DecoratorScene.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using zorOSG::SceneDecorator;
using zorTest::box;
using zorTest::DecoratorScene;
using zorTest::ground;

/** The light slants by 45 degrees along -x, so a thing at height z has its shadow z to the left. */
osg::Vec3d const SHADOW(-2.0, 0.0, 0.0);
osg::Vec3d const LIT(2.0, 0.0, 0.0);

struct Shadows : testing::Test {
  Shadows() {
    floor = ground(5.0f);
    block = box(1.0f, {0.0, 0.0, 2.0});
    scene.decorator->addChild(floor);
    scene.decorator->addChild(block);
  }

  bool isShadowed(char const* name = nullptr) {
    auto const image = scene.render();
    if (name)
      zorTest::keepImage(*image, name);
    return scene.at(*image, SHADOW) < 0.6 * scene.at(*image, LIT);
  }

  DecoratorScene scene;
  osg::ref_ptr<osg::MatrixTransform> floor;
  osg::ref_ptr<osg::MatrixTransform> block;
};

TEST_F(Shadows, fallWhereGeometrySays) {
  auto const image = scene.render();
  zorTest::keepImage(*image, "decorator_shadow");
  double const lit = scene.at(*image, LIT);
  for (double const x : {-2.8, -2.0, -1.2})
    for (double const y : {-0.4, 0.0, 0.4})
      EXPECT_LT(scene.at(*image, {x, y, 0.0}), 0.6 * lit) << x << ", " << y;
  for (osg::Vec3d const& outside : {osg::Vec3d(-3.2, 0, 0), {-2.0, -0.65, 0}, {-2.0, 0.65, 0}, {-0.85, 0, 0}})
    EXPECT_NEAR(scene.at(*image, outside), lit, 0.02) << outside.x() << ", " << outside.y();
}

TEST_F(Shadows, followTheBodyTheLightAndTheSwitches) {
  SceneDecorator& decorator = *scene.decorator;
  EXPECT_TRUE(isShadowed());
  block->setMatrix(osg::Matrixd::translate(0.0, 0.0, 4.5));
  EXPECT_FALSE(isShadowed()) << "the shadow has moved on";
  block->setMatrix(osg::Matrixd::translate(0.0, 0.0, 2.0));

  decorator.getLightSource(SceneDecorator::LIGHT0).setPosition(zor::Vec4(-1.0, 0.0, 1.0, 0.0));
  EXPECT_FALSE(isShadowed()) << "the light comes from the other side";
  decorator.getLightSource(SceneDecorator::LIGHT0).setPosition(zor::Vec4(20.0, 0.0, 20.0, 1.0));
  EXPECT_TRUE(isShadowed("decorator_point_light")) << "a light with a place";
  decorator.getLightSource(SceneDecorator::LIGHT0).setPosition(zor::Vec4(1.0, 0.0, 1.0, 0.0));

  decorator.setEnableShadows(false);
  EXPECT_FALSE(isShadowed());
  decorator.setEnableShadows(true);
  decorator.setShadowMethod(SceneDecorator::NO_SHADOWS);
  EXPECT_FALSE(isShadowed());
  decorator.setShadowMethod(SceneDecorator::SHADOWMAP);
  EXPECT_TRUE(isShadowed("decorator_sharp_shadow"));
  decorator.setEnableShaderState(false);
  EXPECT_FALSE(isShadowed()) << "the fixed pipeline has none";
}

TEST_F(Shadows, respectNodeMasksAndTransparency) {
  block->setNodeMask(~64u);
  EXPECT_FALSE(isShadowed()) << "does not cast";
  block->setNodeMask(~0u);
  floor->setNodeMask(~128u);
  EXPECT_FALSE(isShadowed()) << "does not receive";
  floor->setNodeMask(~0u);
  EXPECT_TRUE(isShadowed());

  zorTest::paint(*block, {0.6f, 0.6f, 0.6f, 0.3f});
  block->getStateSet()->setMode(GL_BLEND, osg::StateAttribute::ON);
  block->getStateSet()->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  EXPECT_FALSE(isShadowed()) << "glass casts no hard shadow";
}

TEST_F(Shadows, nonShadowedSceneIsDrawnWithoutShadows) {
  scene.decorator->removeChild(floor.get());
  scene.decorator->getNonShadowedScene()->addChild(floor);
  EXPECT_FALSE(isShadowed()) << "does not receive";
  scene.decorator->getNonShadowedScene()->addChild(block);
  scene.decorator->removeChild(block.get());
  scene.decorator->addChild(ground(5.0f));
  EXPECT_FALSE(isShadowed()) << "does not cast";
}

TEST_F(Shadows, stayCrispOnAWideGround) {
  scene.decorator->removeChild(floor.get());
  scene.decorator->addChild(ground(2000.0f));
  auto const image = scene.render();
  zorTest::keepImage(*image, "decorator_wide_ground");
  double const lit = scene.at(*image, LIT);
  EXPECT_LT(scene.at(*image, {-2.85, 0.3, 0.0}), 0.6 * lit);
  EXPECT_NEAR(scene.at(*image, {-3.15, 0.3, 0.0}), lit, 0.02);
}

/** A convex body has no shadow on its lit faces: each darker pixel would be the map's own error. */
TEST_F(Shadows, litFacesDoNotShadowThemselves) {
  SceneDecorator& decorator = *scene.decorator;
  decorator.removeChild(block.get());
  decorator.addChild(zorTest::place(new osg::Sphere({}, 1.0f), osg::Matrixd::translate(0.0, 0.0, 1.0)));
  decorator.addChild(zorTest::place(new osg::Box({}, 2.0f, 1.0f, 0.6f),
                                    osg::Matrixd::rotate(0.5, osg::Vec3d(1.0, 0.3, 0.2)) *
                                        osg::Matrixd::translate(2.0, 3.0, 2.0)));
  scene.view.lookAt({12.0, -5.0, 10.0}, {0.5, 1.0, 0.5});
  for (auto const method : {SceneDecorator::SOFT_SHADOWMAP, SceneDecorator::SHADOWMAP}) {
    decorator.setShadowMethod(method);
    auto const shadowed = scene.render();
    decorator.setShadowMethod(SceneDecorator::NO_SHADOWS);
    auto const plain = scene.render();
    zorTest::keepImage(*shadowed, "decorator_acne" + std::to_string(method));
    for (double const angle : {0.15, 0.4, 0.7, 1.0}) // from the light's direction, on the sphere
      for (double around = 0.0; around < 6.2; around += 0.2) {
        osg::Vec3d const slanted =
            osg::Quat(around, osg::Vec3d(0.7071, 0.0, 0.7071)) *
            (osg::Quat(angle, osg::Vec3d(0.0, 1.0, 0.0)) * osg::Vec3d(0.7071, 0.0, 0.7071));
        osg::Vec3d const point = osg::Vec3d(0.0, 0.0, 1.0) + slanted;
        EXPECT_NEAR(scene.at(*plain, point), scene.at(*shadowed, point), 0.015) << angle << " " << around;
      }
  }
}

/** A body on the ground is joined to its shadow: there is no strip of light between them. */
TEST_F(Shadows, touchTheBodyThatStandsOnTheGround) {
  block->setMatrix(osg::Matrixd::translate(0.0, 0.0, 0.5));
  scene.view.lookAt({-8.0, -3.0, 6.0}, {-0.5, 0.0, 0.2});
  auto const image = scene.render();
  zorTest::keepImage(*image, "decorator_contact");
  double const lit = scene.at(*image, {-3.0, 0.0, 0.0});
  for (double const gap : {0.06, 0.15, 0.5})
    EXPECT_LT(scene.at(*image, {-0.5 - gap, 0.0, 0.0}), 0.6 * lit) << gap;
}

TEST_F(Shadows, softOnesHaveWiderEdges) {
  scene.view.lookAt({-2.0, -0.01, 4.0}, {-2.0, 0.0, 0.0});
  auto const edgePixels = [this](SceneDecorator::ShadowMethod method) {
    scene.decorator->setShadowMethod(method);
    auto const image = scene.render();
    zorTest::keepImage(*image, "decorator_edge" + std::to_string(method));
    double const lit = scene.at(*image, {-3.5, 0.0, 0.0});
    double const dark = scene.at(*image, SHADOW);
    int between = 0;
    for (int x = 0; x < image->s(); ++x) {
      double const value = zorTest::brightness(*image, osg::Vec2d(x, image->t() / 2));
      between += value > dark + 0.1 * (lit - dark) && value < lit - 0.1 * (lit - dark) ? 1 : 0;
    }
    return between;
  };
  int const soft = edgePixels(SceneDecorator::SOFT_SHADOWMAP);
  EXPECT_GT(soft, edgePixels(SceneDecorator::SHADOWMAP));
}

TEST_F(Shadows, refuseWhatIsNoMethodOrLight) {
  EXPECT_THROW(scene.decorator->setShadowMethod(static_cast<SceneDecorator::ShadowMethod>(7)),
               std::invalid_argument);
  EXPECT_THROW(scene.decorator->setShadowLightSource(SceneDecorator::ALL), std::invalid_argument);
  scene.decorator->setShadowLightSource(SceneDecorator::LIGHT2);
  EXPECT_EQ(SceneDecorator::LIGHT2, scene.decorator->getShadowLightSource());
  EXPECT_FALSE(isShadowed()) << "that light is off";
}

} // namespace
