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

/** Each of the methods that draw shadows. */
struct EveryMethod : Shadows, testing::WithParamInterface<SceneDecorator::ShadowMethod> {
  EveryMethod() { scene.decorator->setShadowMethod(GetParam()); }
  std::string named(char const* what) const { return std::string(what) + std::to_string(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(Methods, EveryMethod,
                         testing::Values(SceneDecorator::SOFT_SHADOWMAP, SceneDecorator::SHADOWMAP,
                                         SceneDecorator::SHADOWVOLUME,
                                         SceneDecorator::PARALLELLSPLIT_SHADOWMAP,
                                         SceneDecorator::LIGHTSPACEPERSPECTIVE_SHADOWMAP,
                                         SceneDecorator::SHADOWTEXTURE));

TEST_P(EveryMethod, fallWhereGeometrySays) {
  auto const image = scene.render();
  zorTest::keepImage(*image, named("decorator_shadow"));
  double const lit = scene.at(*image, LIT);
  for (double const x : {-2.8, -2.0, -1.2})
    for (double const y : {-0.4, 0.0, 0.4})
      EXPECT_LT(scene.at(*image, {x, y, 0.0}), 0.6 * lit) << x << ", " << y;
  for (osg::Vec3d const& outside : {osg::Vec3d(-3.2, 0, 0), {-2.0, -0.65, 0}, {-2.0, 0.65, 0}, {-0.85, 0, 0}})
    EXPECT_NEAR(scene.at(*image, outside), lit, 0.02) << outside.x() << ", " << outside.y();
}

TEST_P(EveryMethod, followTheBodyAndAPointLight) {
  EXPECT_TRUE(isShadowed());
  block->setMatrix(osg::Matrixd::translate(0.0, 0.0, 4.5));
  EXPECT_FALSE(isShadowed()) << "the shadow has moved on";
  block->setMatrix(osg::Matrixd::scale(-1.0, 1.0, 1.0) * osg::Matrixd::translate(0.0, 0.0, 2.0));
  EXPECT_TRUE(isShadowed()) << "a mirrored body has one as well";
  scene.decorator->getLightSource(SceneDecorator::LIGHT0).setPosition(zor::Vec4(20.0, 0.0, 20.0, 1.0));
  EXPECT_TRUE(isShadowed(named("decorator_point_light").c_str())) << "a light with a place";
  scene.decorator->setEnableShadows(false);
  EXPECT_FALSE(isShadowed());
}

TEST_P(EveryMethod, respectNodeMasksAndTransparency) {
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

/** A convex body has no shadow on its lit faces: each darker pixel would be the method's own error. */
TEST_P(EveryMethod, leaveLitFacesLit) {
  SceneDecorator& decorator = *scene.decorator;
  decorator.removeChild(block.get());
  decorator.addChild(zorTest::place(new osg::Sphere({}, 1.0f), osg::Matrixd::translate(0.0, 0.0, 1.0)));
  decorator.addChild(zorTest::place(new osg::Box({}, 2.0f, 1.0f, 0.6f),
                                    osg::Matrixd::rotate(0.5, osg::Vec3d(1.0, 0.3, 0.2)) *
                                        osg::Matrixd::translate(2.0, 3.0, 2.0)));
  scene.view.lookAt({12.0, -5.0, 10.0}, {0.5, 1.0, 0.5});
  auto const shadowed = scene.render();
  decorator.setShadowMethod(SceneDecorator::NO_SHADOWS);
  auto const plain = scene.render();
  zorTest::keepImage(*shadowed, named("decorator_acne"));
  for (double const angle : {0.15, 0.4, 0.7, 1.0}) // from the light's direction, on the sphere
    for (double around = 0.0; around < 6.2; around += 0.2) {
      osg::Vec3d const slanted =
          osg::Quat(around, osg::Vec3d(0.7071, 0.0, 0.7071)) *
          (osg::Quat(angle, osg::Vec3d(0.0, 1.0, 0.0)) * osg::Vec3d(0.7071, 0.0, 0.7071));
      osg::Vec3d const point = osg::Vec3d(0.0, 0.0, 1.0) + slanted;
      EXPECT_NEAR(scene.at(*plain, point), scene.at(*shadowed, point), 0.015) << angle << " " << around;
    }
}

/** A body on the ground is joined to its shadow: there is no strip of light between them. */
TEST_P(EveryMethod, touchTheBodyThatStandsOnTheGround) {
  block->setMatrix(osg::Matrixd::translate(0.0, 0.0, 0.5));
  scene.view.lookAt({-8.0, -3.0, 6.0}, {-0.5, 0.0, 0.2});
  for (double const place : {0.0, 1.0}) { // a light without a place, and one with
    scene.decorator->getLightSource(SceneDecorator::LIGHT0).setPosition(zor::Vec4(30.0, 0.0, 30.0, place));
    auto const image = scene.render();
    zorTest::keepImage(*image, named("decorator_contact") + std::to_string(place));
    double const lit = scene.at(*image, {-3.0, 0.0, 0.0});
    for (double const gap : {0.1, 0.2, 0.5})
      EXPECT_LT(scene.at(*image, {-0.5 - gap, 0.0, 0.0}), 0.6 * lit) << gap << ", " << place;
  }
}

/** A second body lies in the shadow of the first. */
TEST_P(EveryMethod, fallOnOtherBodiesUnlessTheyAreSilhouettes) {
  scene.decorator->addChild(box(1.0f, {-1.6, 0.0, 0.5}));
  auto const image = scene.render();
  zorTest::keepImage(*image, named("decorator_stacked"));
  double const part = scene.at(*image, {-1.3, 0.0, 1.0}) / scene.at(*image, LIT);
  if (GetParam() == SceneDecorator::SHADOWTEXTURE)
    EXPECT_GT(part, 0.9);
  else
    EXPECT_LT(part, 0.6);
}

/** A sheet keeps light off from both of its sides; a camera inside a shadow sees it as well. */
TEST_P(EveryMethod, comeFromOpenSurfacesAndSurroundTheCamera) {
  scene.decorator->removeChild(block.get());
  for (bool const upsideDown : {false, true}) {
    osg::ref_ptr<osg::Geometry> const sheet = osg::createTexturedQuadGeometry(
        {-0.5f, -0.5f, 2.0f}, upsideDown ? osg::Vec3(0, 1, 0) : osg::Vec3(1, 0, 0),
        upsideDown ? osg::Vec3(1, 0, 0) : osg::Vec3(0, 1, 0));
    zorTest::paint(*sheet, {0.6f, 0.6f, 0.6f, 1.0f});
    scene.decorator->addChild(sheet);
    EXPECT_TRUE(isShadowed()) << upsideDown;
    scene.decorator->removeChild(sheet.get());
  }
  scene.decorator->addChild(box(4.0f, {3.0, 0.0, 5.0}));
  scene.view.lookAt({-2.0, -1.0, 2.0}, {-2.0, 0.0, 0.0});
  EXPECT_LT(scene.at(*scene.render(), SHADOW), 0.5);
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

/** The far end of a long view has shadows of its own, and the near end has finer ones. */
TEST_F(Shadows, ofSplitAndWarpedMapsAreFinerNearby) {
  scene.decorator->removeChild(floor.get());
  scene.decorator->addChild(ground(200.0f));
  for (int i = 1; i < 40; ++i)
    scene.decorator->addChild(box(1.0f, {0.0, 4.0 * i, 2.0}));
  scene.view.lookAt({-2.0, -3.0, 3.0}, {-2.0, 2.0, 0.0});
  auto const blurOf = [this](SceneDecorator::ShadowMethod method) {
    scene.decorator->setShadowMethod(method);
    auto const image = scene.render();
    zorTest::keepImage(*image, "decorator_alley" + std::to_string(method));
    double const lit = scene.at(*image, {-4.0, 0.0, 0.0});
    EXPECT_LT(scene.at(*image, SHADOW), 0.6 * lit) << method;
    EXPECT_LT(scene.at(*image, {-2.0, 8.0, 0.0}), 0.6 * lit) << method << ", far away";
    int between = 0;
    for (double x = -3.4; x < -2.6; x += 0.01) {
      double const value = scene.at(*image, {x, 0.0, 0.0});
      between += value > 0.65 * lit && value < 0.97 * lit ? 1 : 0;
    }
    return between;
  };
  int const uniform = blurOf(SceneDecorator::SOFT_SHADOWMAP);
  EXPECT_LT(blurOf(SceneDecorator::PARALLELLSPLIT_SHADOWMAP), uniform);
  EXPECT_LT(blurOf(SceneDecorator::LIGHTSPACEPERSPECTIVE_SHADOWMAP), uniform);
  EXPECT_LE(blurOf(SceneDecorator::SHADOWVOLUME), 2);
}

TEST_F(Shadows, ofVolumesFollowAMeshThatChanges) {
  scene.decorator->setShadowMethod(SceneDecorator::SHADOWVOLUME);
  osg::ref_ptr<osg::Geometry> const sheet =
      osg::createTexturedQuadGeometry({-0.5f, -0.5f, 2.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f});
  scene.decorator->removeChild(block.get());
  scene.decorator->addChild(sheet);
  EXPECT_TRUE(isShadowed());
  auto& corners = static_cast<osg::Vec3Array&>(*sheet->getVertexArray());
  for (osg::Vec3& corner : corners)
    corner.z() += 2.0f;
  corners.dirty();
  sheet->dirtyBound();
  EXPECT_FALSE(isShadowed());
  scene.decorator->removeChild(sheet.get());
  EXPECT_FALSE(isShadowed()) << "nothing is left behind";
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
