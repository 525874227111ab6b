#include "DecoratorScene.h"

#include <gtest/gtest.h>

#include <osg/Texture2D>

#include <filesystem>
#include <stdexcept>

namespace {

using zorOSG::SceneDecorator;
using zorTest::box;
using zorTest::brightness;
using zorTest::DecoratorScene;
using zorTest::ground;

zor::Vec4f const RED(1.0f, 0.0f, 0.0f, 1.0f);
zor::Vec4f const GREEN(0.0f, 1.0f, 0.0f, 1.0f);
zor::Vec4f const BLUE(0.0f, 0.0f, 1.0f, 1.0f);
zor::Vec4f const BLACK(0.0f, 0.0f, 0.0f, 1.0f);

void expectColor(osg::Image const& image, osg::Vec2d const& at, osg::Vec3 const& expected,
                 double tolerance = 0.03) {
  osg::Vec4 const color =
      image.getColor(static_cast<unsigned int>(at.x()), static_cast<unsigned int>(at.y()));
  for (int i = 0; i < 3; ++i)
    EXPECT_NEAR(expected[i], color[i], tolerance) << "component " << i << " at " << at.x() << ", " << at.y();
}

/** A camera that renders into an image of its own before the window does. */
osg::ref_ptr<osg::Camera> targetCamera(osg::Camera const& like, int width, int height, osg::Image* image) {
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  camera->setViewMatrix(like.getViewMatrix());
  camera->setProjectionMatrix(like.getProjectionMatrix());
  camera->setViewport(0, 0, width, height);
  camera->setRenderOrder(osg::Camera::PRE_RENDER);
  camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
  image->allocateImage(width, height, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  camera->attach(osg::Camera::COLOR_BUFFER, image);
  return camera;
}

TEST(DecoratorBackground, isAGradientBetweenItsColors) {
  DecoratorScene scene(60, 40);
  scene.decorator->setBackgroundColor(RED, BLUE);
  auto image = scene.render();
  expectColor(*image, {5, 39}, {1.0f, 0.0f, 0.0f});
  expectColor(*image, {50, 0}, {0.0f, 0.0f, 1.0f});
  expectColor(*image, {30, 20}, {0.5f, 0.0f, 0.5f}, 0.04);

  scene.decorator->setBackgroundColor(zor::Vec3(1, 0, 0), zor::Vec3(0, 1, 0), zor::Vec3(0, 0, 1),
                                      zor::Vec3(0, 0, 0));
  image = scene.render();
  expectColor(*image, {0, 39}, {1.0f, 0.0f, 0.0f});
  expectColor(*image, {59, 39}, {0.0f, 1.0f, 0.0f});
  expectColor(*image, {0, 0}, {0.0f, 0.0f, 1.0f});
  expectColor(*image, {59, 0}, {0.0f, 0.0f, 0.0f});

  scene.decorator->setBackgroundColor(GREEN);
  expectColor(*scene.render(), {30, 20}, {0.0f, 1.0f, 0.0f});
  EXPECT_THROW(scene.decorator->setBackgroundColor(zor::Vec4f(NAN, 0.0f, 0.0f, 1.0f)), std::invalid_argument);
}

TEST(DecoratorBackground, liesBehindTheSceneAndVanishesWithTheDecorator) {
  DecoratorScene scene;
  scene.decorator->setBackgroundColor(BLUE);
  scene.decorator->addChild(ground(2.0f));
  auto const image = scene.render();
  EXPECT_GT(image->getColor(100, 75).r(), 0.3f) << "the ground is in front";
  scene.view.camera().setClearColor({1.0f, 1.0f, 0.0f, 1.0f});
  scene.decorator->setEnable(false);
  expectColor(*scene.render(), {2, 2}, {1.0f, 1.0f, 0.0f});
  EXPECT_FALSE(scene.decorator->isEnabled());
}

TEST(DecoratorTargets, showBackgroundShadowsAndTextToo) {
  DecoratorScene scene;
  scene.decorator->setBackgroundColor(BLUE);
  scene.decorator->setText(0, "MMMM", RED);
  scene.decorator->addChild(ground(4.0f));
  scene.decorator->addChild(box(1.0f, {0.0, 0.0, 2.0}));
  osg::ref_ptr<osg::Image> const image = new osg::Image;
  auto const target = targetCamera(scene.view.camera(), 400, 300, image);
  target->addChild(scene.decorator);
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  root->addChild(target);
  root->addChild(scene.decorator);
  auto const window = scene.view.render(root, 2);
  zorTest::keepImage(*image, "decorator_target");
  expectColor(*image, {2, 2}, {0.0f, 0.0f, 1.0f});
  osg::Vec2d const shadow = scene.view.project({-2.0, 0.0, 0.0}) * 2.0;
  osg::Vec2d const lit = scene.view.project({2.0, 0.0, 0.0}) * 2.0;
  EXPECT_LT(brightness(*image, shadow), 0.6 * brightness(*image, lit));
  EXPECT_NEAR(brightness(*image, lit), brightness(*window, lit * 0.5), 0.02) << "both views look alike";
  int red = 0;
  for (int y = 225; y < 300; ++y)
    for (int x = 0; x < 200; ++x)
      red += image->getColor(x, y).r() > 0.9f ? 1 : 0;
  EXPECT_GT(red, 50);
}

TEST(DecoratorLights, eachAddsLight) {
  DecoratorScene scene;
  SceneDecorator& decorator = *scene.decorator;
  decorator.setShadowMethod(SceneDecorator::NO_SHADOWS);
  decorator.addChild(ground(4.0f));
  auto const groundBrightness = [&](int mask) {
    decorator.setEnableLights(mask);
    return scene.at(*scene.render(), {});
  };
  double const dark = groundBrightness(0);
  double const key = groundBrightness(SceneDecorator::LIGHT0);
  double const fill = groundBrightness(SceneDecorator::LIGHT1);
  double const all = groundBrightness(SceneDecorator::ALL);
  EXPECT_GT(fill, dark + 0.02);
  EXPECT_GT(key, fill + 0.1);
  EXPECT_GT(all, key + 0.05);
  decorator.calculateLightPositions();
  EXPECT_NEAR(all, scene.at(*scene.render(), {}), 0.05) << "lights with a place light the middle alike";
}

TEST(DecoratorLights, canBeChangedThroughTheirHandles) {
  DecoratorScene scene;
  SceneDecorator& decorator = *scene.decorator;
  decorator.addChild(ground(4.0f));
  zorOSG::LightSource light = decorator.getLightSource(SceneDecorator::LIGHT0);
  EXPECT_EQ(0, light.getLightNum());
  light.setDiffuse(zor::Vec4f(0.0f, 1.0f, 0.0f, 1.0f));
  osg::Vec4 const green = scene.render()->getColor(100, 75);
  EXPECT_GT(green.g(), green.r() + 0.2f);

  light.setPosition(zor::Vec4(0.0, 0.0, 6.0, 1.0));
  light.setDirection(zor::Vec3(0.0, 0.0, -2.0));
  light.setSpotCutoff(20.0f);
  EXPECT_NEAR(-1.0, light.getDirection().z(), 1e-6) << "normalised";
  auto const spot = scene.render();
  zorTest::keepImage(*spot, "decorator_spot");
  EXPECT_GT(scene.at(*spot, {}), scene.at(*spot, {3.0, 0.0, 0.0}) + 0.1) << "outside the cone";
  double const near = scene.at(*spot, {});
  light.setQuadraticAttenuation(0.1f);
  EXPECT_LT(scene.at(*scene.render(), {}), near - 0.05) << "fades with distance";

  EXPECT_THROW(light.setPosition(zor::Vec4(0, 0, 0, 0)), std::invalid_argument);
  EXPECT_THROW(light.setSpotCutoff(120.0f), std::invalid_argument);
  EXPECT_THROW(light.setLinearAttenuation(-1.0f), std::invalid_argument);
  EXPECT_THROW(zorOSG::LightSource(nullptr), std::invalid_argument);
}

TEST(DecoratorLights, areNamedByTheirBits) {
  EXPECT_EQ(0u, SceneDecorator::lightToIndex(SceneDecorator::LIGHT0));
  EXPECT_EQ(2u, SceneDecorator::lightToIndex(SceneDecorator::LIGHT2));
  EXPECT_THROW(SceneDecorator::lightToIndex(SceneDecorator::ALL), std::invalid_argument);
  EXPECT_THROW(SceneDecorator::lightToIndex(static_cast<SceneDecorator::Lights>(0)), std::invalid_argument);
  EXPECT_THROW(new SceneDecorator(100, 100, 8), std::invalid_argument);
  EXPECT_THROW(new SceneDecorator(0, 100), std::invalid_argument);
}

TEST(DecoratorLights, arePlacedAroundTheSceneUnlessTheyAreFixed) {
  osg::ref_ptr<SceneDecorator> const decorator = new SceneDecorator(100, 100);
  decorator->calculateLightPositions();
  EXPECT_EQ(0.0, decorator->getLightSource(SceneDecorator::LIGHT0).getPosition().w()) << "there is no scene";
  decorator->setEnableCalculateLightPositions(SceneDecorator::LIGHT1, false);
  decorator->calculateLightPositions(osg::BoundingSphere({10.0f, 0.0f, 0.0f}, 5.0f));
  zor::Vec4 const placed = decorator->getLightSource(SceneDecorator::LIGHT0).getPosition();
  EXPECT_EQ(1.0, placed.w());
  EXPECT_NEAR(15.0, (placed.xyz() - zor::Vec3(10, 0, 0)).length(), 1e-4);
  EXPECT_GT(placed.z(), 0.0) << "lights come from above";
  EXPECT_EQ(0.0, decorator->getLightSource(SceneDecorator::LIGHT1).getPosition().w());
}

/** What materials, textures, vertex colours and light switches say comes through the shader. */
struct DecoratorSurface : testing::Test {
  DecoratorSurface() {
    scene.view.lookAt({0.0, 0.0, 10.0}, {}, {0.0, 1.0, 0.0});
    scene.decorator->getLightSource(SceneDecorator::LIGHT0).setPosition(zor::Vec4(0.0, 0.0, 1.0, 0.0));
    osg::ref_ptr<osg::Vec3Array> const corners = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec2Array> const image = new osg::Vec2Array(osg::Array::BIND_PER_VERTEX);
    for (auto const& [x, y] : {std::pair(-1.0f, -1.0f), {1.0f, -1.0f}, {-1.0f, 1.0f}, {1.0f, 1.0f}}) {
      corners->push_back({3.0f * x, 3.0f * y, 0.0f});
      image->push_back({0.5f + 0.5f * x, 0.5f + 0.5f * y});
    }
    quad->setVertexArray(corners);
    quad->setTexCoordArray(0, image);
    quad->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, 4));
    scene.decorator->addChild(quad);
  }

  osg::Vec4 drawn() { return scene.render()->getColor(100, 75); }

  void color(osg::Vec4 const& value) {
    osg::ref_ptr<osg::Vec4Array> const colors = new osg::Vec4Array(osg::Array::BIND_OVERALL);
    colors->push_back(value);
    quad->setColorArray(colors);
  }

  void normal(osg::Vec3 const& value) {
    osg::ref_ptr<osg::Vec3Array> const normals = new osg::Vec3Array(osg::Array::BIND_OVERALL);
    normals->push_back(value);
    quad->setNormalArray(normals);
  }

  DecoratorScene scene;
  osg::ref_ptr<osg::Geometry> quad = new osg::Geometry;
};

TEST_F(DecoratorSurface, isLitWithAndWithoutNormalsFromBothSides) {
  zorTest::paint(*quad, {0.8f, 0.0f, 0.0f, 1.0f});
  osg::Vec4 const without = drawn();
  normal({0.0f, 0.0f, 1.0f});
  osg::Vec4 const with = drawn();
  EXPECT_GT(with.r(), 0.5f);
  EXPECT_LT(with.g(), 0.1f);
  EXPECT_NEAR(with.r(), without.r(), 0.02f) << "faces without normals are lit as flat";
  scene.view.lookAt({0.0, 0.0, -10.0}, {}, {0.0, 1.0, 0.0});
  EXPECT_LT(drawn().r(), with.r() - 0.2f) << "the back is turned away from the light";
}

TEST_F(DecoratorSurface, takesItsColorsFromWhereTheyAreSet) {
  normal({0.0f, 0.0f, 1.0f});
  color({0.0f, 0.8f, 0.0f, 1.0f});
  osg::Vec4 shown = drawn();
  EXPECT_GT(shown.g(), shown.r() + 0.3f) << "vertex colours where there is no material";
  zorTest::paint(*quad, {0.8f, 0.0f, 0.0f, 1.0f});
  shown = drawn();
  EXPECT_GT(shown.r(), shown.g() + 0.3f) << "a material wins over them";
  auto* const material =
      static_cast<osg::Material*>(quad->getStateSet()->getAttribute(osg::StateAttribute::MATERIAL));
  material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
  shown = drawn();
  EXPECT_GT(shown.g(), shown.r() + 0.3f) << "unless it says that they count";
  material->setColorMode(osg::Material::OFF);
  material->setEmission(osg::Material::FRONT_AND_BACK, {0.0f, 0.0f, 0.9f, 1.0f});
  EXPECT_GT(drawn().b(), 0.85f);
}

TEST_F(DecoratorSurface, withoutLightShowsVertexColorsAsTheyAre) {
  color({0.2f, 0.4f, 0.6f, 1.0f});
  quad->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  osg::Vec4 const shown = drawn();
  EXPECT_NEAR(0.2f, shown.r(), 0.01f);
  EXPECT_NEAR(0.6f, shown.b(), 0.01f);
  quad->getStateSet()->removeMode(GL_LIGHTING);
  EXPECT_NE(shown, drawn()) << "lit again";
}

TEST_F(DecoratorSurface, showsTextures) {
  normal({0.0f, 0.0f, 1.0f});
  zorTest::paint(*quad, {0.8f, 0.8f, 0.8f, 1.0f});
  osg::ref_ptr<osg::Image> const image = new osg::Image;
  image->allocateImage(1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  image->setColor({1.0f, 0.0f, 0.0f, 1.0f}, 0, 0);
  quad->getStateSet()->setTextureAttributeAndModes(0, new osg::Texture2D(image));
  osg::Vec4 const shown = drawn();
  EXPECT_GT(shown.r(), 0.5f);
  EXPECT_LT(shown.g(), 0.05f);
  quad->getStateSet()->setTextureMode(0, GL_TEXTURE_2D, osg::StateAttribute::OFF);
  EXPECT_GT(drawn().g(), 0.5f) << "switched off";
  EXPECT_FALSE(scene.decorator->setBaseTexture("no such image.png"));
}

TEST_F(DecoratorSurface, isSeenThroughWhereItIsTransparent) {
  normal({0.0f, 0.0f, 1.0f});
  scene.decorator->setBackgroundColor(BLUE);
  zorTest::paint(*quad, {0.8f, 0.0f, 0.0f, 0.5f});
  quad->getStateSet()->setMode(GL_BLEND, osg::StateAttribute::ON);
  quad->getStateSet()->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  osg::Vec4 const shown = drawn();
  EXPECT_NEAR(0.5f, shown.b(), 0.05f);
  EXPECT_GT(shown.r(), 0.25f);
}

struct DecoratorHud : testing::Test {
  DecoratorHud() {
    scene.decorator->setBackgroundColor(BLACK);
    scene.view.context();
  }

  /** \return pixels of some colour in the rows from..to below the upper edge */
  int lettersIn(int from, int to) {
    auto const image = scene.render();
    int count = 0;
    for (int y = image->t() - to; y < image->t() - from; ++y)
      for (int x = 0; x < image->s(); ++x)
        count += brightness(*image, osg::Vec2d(x, y)) > 0.25 ? 1 : 0;
    return count;
  }

  DecoratorScene scene;
};

TEST_F(DecoratorHud, writesRowsFromTheTop) {
  SceneDecorator& decorator = *scene.decorator;
  EXPECT_EQ(0, lettersIn(0, 150));
  decorator.setText(0, "Time 1.25 s");
  int const first = lettersIn(0, 35);
  EXPECT_GT(first, 100);
  EXPECT_EQ(0, lettersIn(40, 150));
  decorator.setText(2, "third row", GREEN);
  EXPECT_GT(lettersIn(60, 90), 50);
  EXPECT_EQ(first, lettersIn(0, 35)) << "rows do not disturb each other";
  decorator.setText(0, "");
  EXPECT_EQ(0, lettersIn(0, 35));
  decorator.clearText();
  EXPECT_EQ(0, lettersIn(0, 150));
  EXPECT_THROW(decorator.setText(-1, "x"), std::out_of_range);
  EXPECT_THROW(decorator.setText(64, "x"), std::out_of_range);
  decorator.setText(63, "\xff\xfe is no UTF-8");
  scene.render();
}

TEST_F(DecoratorHud, changesSizeAndFont) {
  SceneDecorator& decorator = *scene.decorator;
  decorator.setText(0, "Size");
  int const small = lettersIn(0, 75);
  decorator.setFontSize(36.0f);
  EXPECT_GT(lettersIn(0, 75), 2 * small);
  EXPECT_EQ(36.0f, decorator.getFontSize());
  EXPECT_THROW(decorator.setFontSize(0.0f), std::invalid_argument);
  std::string const font = decorator.getFontName();
  decorator.setFontName("no such font.ttf");
  EXPECT_EQ(font, decorator.getFontName());
}

TEST_F(DecoratorHud, drawsNodesOfTheUserInUnitCoordinates) {
  SceneDecorator& decorator = *scene.decorator;
  osg::ref_ptr<osg::Geometry> const quad =
      osg::createTexturedQuadGeometry({0.5f, 0.0f, 0.0f}, {0.5f, 0.0f, 0.0f}, {0.0f, 0.5f, 0.0f});
  osg::ref_ptr<osg::Vec4Array> const color = new osg::Vec4Array(osg::Array::BIND_OVERALL);
  color->push_back({1.0f, 0.0f, 0.0f, 1.0f});
  quad->setColorArray(color);
  decorator.getHud()->addChild(quad);
  auto const image = scene.render();
  expectColor(*image, {150, 40}, {1.0f, 0.0f, 0.0f});
  expectColor(*image, {50, 40}, {0.0f, 0.0f, 0.0f});
  expectColor(*image, {150, 110}, {0.0f, 0.0f, 0.0f});
  EXPECT_FALSE(decorator.getBound().valid()) << "the HUD is no part of the scene";
  decorator.resetHUD();
  EXPECT_EQ(0, lettersIn(0, 150));
}

TEST_F(DecoratorHud, showsALogoInItsCorner) {
  SceneDecorator& decorator = *scene.decorator;
  osg::ref_ptr<osg::Image> const image = new osg::Image;
  image->allocateImage(20, 15, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  for (int y = 0; y < 15; ++y)
    for (int x = 0; x < 20; ++x)
      image->setColor({1.0f, 1.0f, 1.0f, 1.0f}, x, y);
  decorator.setLogo(new osg::Texture2D(image));
  EXPECT_NEAR(0.1, decorator.getLogoDimension().x(), 1e-6) << "20 of 200 pixels";
  decorator.setLogoPosition(0.5f, 0.5f);
  EXPECT_GT(brightness(*scene.render(), {12, 8}), 0.9) << "lower left until the location is free";
  decorator.setLogoLocation(SceneDecorator::FREE);
  auto shown = scene.render();
  EXPECT_GT(brightness(*shown, {110, 80}), 0.9);
  EXPECT_LT(brightness(*shown, {12, 8}), 0.1);
  decorator.setLogoLocation(SceneDecorator::UPPER_RIGHT);
  EXPECT_GT(brightness(*scene.render(), {187, 141}), 0.9);
  decorator.setMaximumLogoDimension(0.05f, 1.0f);
  EXPECT_NEAR(0.05, decorator.getLogoDimension().x(), 1e-6);
  EXPECT_NEAR(0.05, decorator.getLogoDimension().y(), 1e-6) << "keeps its proportions";
  decorator.setEnableLogo(false);
  EXPECT_EQ(0, lettersIn(0, 150));
  EXPECT_THROW(decorator.setLogoFile("no such logo.png"), std::runtime_error);
  EXPECT_NE(nullptr, decorator.getLogo()) << "the logo stays";
  EXPECT_THROW(decorator.setLogoLocation(static_cast<SceneDecorator::LogoLocation>(9)),
               std::invalid_argument);
}

TEST_F(DecoratorHud, drawsTheCursorWhereItIs) {
  scene.decorator->setEnableRenderedCursor(true);
  scene.decorator->updateCursorPosition(0.5f, 0.5f);
  EXPECT_GT(brightness(*scene.render(), {102, 67}), 0.9);
  scene.decorator->updateCursorPosition(0.1f, 0.5f);
  EXPECT_LT(brightness(*scene.render(), {102, 67}), 0.1);
}

TEST(DecoratorChildren, areTheShadowedSceneAndNothingElse) {
  osg::ref_ptr<SceneDecorator> const decorator = new SceneDecorator(100, 100);
  osg::ref_ptr<osg::Group> const a = new osg::Group, b = new osg::Group, c = new osg::Group;
  EXPECT_TRUE(decorator->addChild(a));
  EXPECT_TRUE(decorator->insertChild(0, b));
  EXPECT_EQ(2u, decorator->getNumChildren());
  EXPECT_EQ(b.get(), decorator->getShadowedScene()->getChild(0));
  EXPECT_TRUE(decorator->replaceChild(b, c));
  EXPECT_TRUE(decorator->setChild(1, b));
  EXPECT_FALSE(decorator->setChild(5, b));
  EXPECT_FALSE(decorator->setChild(0, nullptr));
  EXPECT_FALSE(decorator->addChild(nullptr));
  EXPECT_TRUE(decorator->removeChild(0u));
  EXPECT_EQ(1u, decorator->getNumChildren()) << "one at a time by default";
  EXPECT_FALSE(decorator->removeChild(a.get())) << "was replaced";
  EXPECT_FALSE(decorator->removeChild(7u, 2u));
  EXPECT_TRUE(decorator->removeChildren(0, 1));

  decorator->getNonShadowedScene()->addChild(ground(2.0f));
  EXPECT_TRUE(decorator->getBound().valid()) << "the non-shadowed scene is part of the scene";
  osg::ref_ptr<osg::Group> const outlives = decorator->getNonShadowedScene();
  EXPECT_EQ(1u, outlives->getNumParents());
}

TEST(DecoratorChildren, outliveTheDecorator) {
  osg::ref_ptr<osg::Group> nonShadowed;
  {
    osg::ref_ptr<SceneDecorator> const decorator = new SceneDecorator(100, 100);
    nonShadowed = decorator->getNonShadowedScene();
  }
  EXPECT_EQ(0u, nonShadowed->getNumParents());
  nonShadowed->addChild(ground(1.0f));
  EXPECT_TRUE(nonShadowed->getBound().valid());
}

} // namespace
