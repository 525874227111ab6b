// Texts, panels, lines and what listeners have drawn.

#include "DecoratorScene.h"
#include "SceneProbe.h"

#include <zor/Notify.h>
#include <zor/RigidBody.h>
#include <zorCollide/Box.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Sphere.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Panel.h>
#include <zorOSG/Primitives.h>
#include <zorSDK/ContactEventListener.h>
#include <zorSDK/Simulation.h>
#include <zorSDK/StepEventListener.h>

#include <functional>
#include <limits>
#include <stdexcept>

#include <osg/PolygonMode>

#include <gtest/gtest.h>

using zor::ref_ptr;
using zor::Vec3;
using zorOSG::Text;

namespace {

double const NaN = std::numeric_limits<double>::quiet_NaN();

/** A box of pixels that are brighter than the black background, and how many they are. */
struct Lit {
  explicit Lit(osg::Image const& image, double least = 0.3, double background = 0) {
    for (int y = 0; y < image.t(); ++y) {
      for (int x = 0; x < image.s(); ++x) {
        if (std::abs(zorTest::brightness(image, osg::Vec2d(x, y)) - background) < least)
          continue;
        box.expandBy(osg::Vec3(static_cast<float>(x), static_cast<float>(y), 0));
        ++count;
      }
    }
  }
  double width() const { return count ? box.xMax() - box.xMin() + 1 : 0; }
  double height() const { return count ? box.yMax() - box.yMin() + 1 : 0; }

  osg::BoundingBox box;
  int count = 0;
};

/** A decorated scene over black. The camera looks along y at the origin; a metre is forty pixels there. */
class Annotation : public testing::Test {
protected:
  Annotation() {
    scene.decorator->setBackgroundColor(Vec3());
    look({0, -10, 0});
    scene.view.camera().setProjectionMatrixAsOrtho(-2.5, 2.5, -1.875, 1.875, 0.1, 100);
    scene.decorator->addChild(root);
  }

  void look(osg::Vec3d const& eye, osg::Vec3d const& up = {0, 0, 1}) { scene.view.lookAt(eye, {}, up); }

  osg::ref_ptr<osg::Image> picture() {
    osg::ref_ptr<osg::Image> const image = scene.render(2);
    zorTest::keepImage(*image, "annotation");
    return image;
  }

  /** Brightness at a point, or right beside it, as lines are thin. */
  double near(osg::Image const& image, osg::Vec3d const& point) {
    double most = 0;
    for (int i = 0; i < 9; ++i)
      most = std::max(
          most, zorTest::brightness(image, scene.view.project(point) + osg::Vec2d(i % 3 - 1, i / 3 - 1)));
    return most;
  }

  osg::ref_ptr<Text> addText(std::string const& text, float size = 0.8f) {
    osg::ref_ptr<Text> const node = new Text(text);
    node->setCharacterSize(size);
    node->setAlignment(Text::CENTER_CENTER);
    root->addChild(node);
    return node;
  }

  zorTest::DecoratorScene scene;
  osg::ref_ptr<osg::Group> root = new osg::Group;
};

TEST_F(Annotation, TextsLieInTheirPlanes) {
  osg::ref_ptr<Text> const text = addText("LLL");
  struct Case {
    Text::AxisAlignment plane;
    osg::Vec3d front; // from where it is read
    osg::Vec3d up, side;
  };
  for (auto const& [plane, front, up, side] :
       {Case{Text::XY_PLANE, {0, 0, 10}, {0, 1, 0}, {10, 0, 0.01}},
        Case{Text::REVERSED_XY_PLANE, {0, 0, -10}, {0, 1, 0}, {10, 0, 0.01}},
        Case{Text::XZ_PLANE, {0, -10, 0}, {0, 0, 1}, {10, 0.01, 0}},
        Case{Text::REVERSED_XZ_PLANE, {0, 10, 0}, {0, 0, 1}, {10, 0.01, 0}},
        Case{Text::YZ_PLANE, {10, 0, 0}, {0, 0, 1}, {0.01, 10, 0}},
        Case{Text::REVERSED_YZ_PLANE, {-10, 0, 0}, {0, 0, 1}, {0.01, 10, 0}}}) {
    text->setAxisAlignment(plane);
    look(front, up);
    osg::ref_ptr<osg::Image> const image = picture();
    Lit const lit(*image);
    ASSERT_GT(lit.count, 100) << plane;
    // An L has its stroke at the left: mirrored letters would have it at the right.
    int left = 0, right = 0;
    for (double x = lit.box.xMin(); x <= lit.box.xMin() + 6; ++x)
      left += zorTest::brightness(*image, {x, lit.box.yMax() - 4.0}) > 0.3;
    for (double x = lit.box.xMax() - 6; x <= lit.box.xMax(); ++x)
      right += zorTest::brightness(*image, {x, lit.box.yMax() - 4.0}) > 0.3;
    EXPECT_TRUE(left > 0 && right == 0) << plane;
    look(side, {0, 0, 1});
    EXPECT_LT(Lit(*picture()).count, lit.count / 5) << "seen from its edge " << plane;
  }
  text->setAxisAlignment(Text::SCREEN);
  for (osg::Vec3d const& eye : {osg::Vec3d(0, -10, 0), osg::Vec3d(7, 7, 3)}) {
    look(eye);
    EXPECT_GT(Lit(*picture()).width(), 50);
  }
}

TEST_F(Annotation, TextsAreAlignedAtTheirPosition) {
  osg::ref_ptr<Text> const text = addText("HHH\nHHH", 0.5f);
  osg::Vec2d const at = scene.view.project({});
  auto const boxOf = [&](Text::AlignmentType alignment) {
    text->setAlignment(alignment);
    return Lit(*picture()).box;
  };
  for (int alignment = Text::LEFT_TOP; alignment <= Text::RIGHT_BOTTOM_BASE_LINE; ++alignment) {
    osg::BoundingBox const box = boxOf(static_cast<Text::AlignmentType>(alignment));
    bool const isOnGrid = alignment < Text::LEFT_BASE_LINE;
    int const across = isOnGrid ? alignment / 3 : alignment % 3; // left, centre, right
    double const x[] = {box.xMin(), box.center().x(), box.xMax()};
    EXPECT_NEAR(x[across], at.x(), 4) << alignment;
    // Top, centre, bottom; the first line's base, which here is in the middle; the last one's.
    int const along = isOnGrid ? alignment % 3 : (alignment < Text::LEFT_BOTTOM_BASE_LINE ? 1 : 2);
    double const y[] = {box.yMax(), box.center().y(), box.yMin()};
    EXPECT_NEAR(y[along], at.y(), along == 1 ? 7 : 4) << alignment;
  }
  EXPECT_THROW(text->setAlignment(static_cast<Text::AlignmentType>(15)), std::invalid_argument);
  EXPECT_THROW(text->setAxisAlignment(static_cast<Text::AxisAlignment>(-1)), std::invalid_argument);
}

TEST_F(Annotation, BackdropsLieWhereTheyAreCalled) {
  scene.decorator->setBackgroundColor(Vec3(1, 1, 1));
  osg::ref_ptr<Text> const text = addText("O", 2);
  text->setColor(zor::Vec4f(0, 1, 0, 1));
  // The middle of what is black, that is, of the backdrop, away from that of the letter.
  auto const shift = [&](Text::BackdropType type) {
    text->setBackdropType(type);
    osg::ref_ptr<osg::Image> const image = picture();
    osg::Vec2d green, black;
    int greens = 0, blacks = 0;
    for (int y = 0; y < image->t(); ++y) {
      for (int x = 0; x < image->s(); ++x) {
        osg::Vec4 const color = image->getColor(static_cast<unsigned int>(x), static_cast<unsigned int>(y));
        if (color.r() < 0.3 && color.g() > 0.7) {
          green += osg::Vec2d(x, y);
          ++greens;
        } else if (color.g() < 0.3) {
          black += osg::Vec2d(x, y);
          ++blacks;
        }
      }
    }
    EXPECT_GT(greens, 100) << type;
    EXPECT_EQ(blacks > 10, type != Text::NONE) << type << ": " << blacks;
    return blacks ? black / blacks - green / greens : osg::Vec2d();
  };
  for (int type = Text::DROP_SHADOW_BOTTOM_RIGHT; type <= Text::DROP_SHADOW_TOP_LEFT; ++type) {
    osg::Vec2d const away = shift(static_cast<Text::BackdropType>(type));
    int const x[] = {1, 1, 1, 0, 0, -1, -1, -1}, y[] = {-1, 0, 1, -1, 1, -1, 0, 1};
    auto const side = [](double value) { return value > 1 ? 1 : (value < -1 ? -1 : 0); };
    EXPECT_EQ(side(away.x()), x[type]) << type << ": " << away.x();
    EXPECT_EQ(side(away.y()), y[type]) << type << ": " << away.y();
  }
  EXPECT_LT(shift(Text::OUTLINE).length(), 1);
  shift(Text::NONE);
  EXPECT_THROW(text->setBackdropType(static_cast<Text::BackdropType>(10)), std::invalid_argument);
}

TEST_F(Annotation, TextsDrawWhatTheirModeSays) {
  scene.decorator->setBackgroundColor(Vec3(0.5, 0.5, 0.5));
  osg::ref_ptr<Text> const text = addText("o");
  text->setBackdropType(Text::NONE);
  auto const lit = [&](int mode) {
    text->setDrawMode(static_cast<Text::DrawModeMask>(mode));
    return Lit(*picture(), 0.15, 0.5);
  };
  Lit const letters = lit(Text::TEXT), outline = lit(Text::BOUNDINGBOX),
            filled = lit(Text::FILLEDBOUNDINGBOX), cross = lit(Text::ALIGNMENT), all = lit(15);
  EXPECT_EQ(lit(0).count, 0);
  EXPECT_GE(outline.width(), letters.width());
  EXPECT_GT(filled.count, 2 * outline.count);
  EXPECT_GT(cross.count, 0);
  EXPECT_GE(all.count, filled.count);
}

TEST_F(Annotation, FontsAreFoundOrTheOldOneStays) {
  osg::ref_ptr<Text> const text = addText("Wi∑Ж");
  double const before = Lit(*picture()).width();
  std::string log;
  bool const console = zor::Notify::instance().getEnableConsole();
  zor::Notify::instance().setEnableConsole(false);
  int const target =
      zor::Notify::instance().addTarget([&log](zor::NotifyMessage const& message) { log += message.text; });
  for (char const* missing : {"nowhere.ttf", ""})
    text->setFont(missing);
  zor::Notify::instance().removeTarget(target);
  zor::Notify::instance().setEnableConsole(console);
  EXPECT_NE(log.find("font 'nowhere.ttf' cannot be read"), std::string::npos) << log;
  EXPECT_EQ(Lit(*picture()).width(), before);
  text->setFont("DejaVuSansMono.ttf");
  EXPECT_NE(Lit(*picture()).width(), before);
  text->setText("");
  EXPECT_EQ(Lit(*picture()).count, 0);
  for (std::function<void()> const& bad : {std::function<void()>([&] { text->setCharacterSize(0); }),
                                           {[&] { text->setCharacterSize(-1); }},
                                           {[&] { text->setPosition(Vec3(NaN, 0, 0)); }},
                                           {[&] { text->setColor(zor::Vec4f(0, 0, 0, NAN)); }}})
    EXPECT_THROW(bad(), std::invalid_argument);
}

TEST_F(Annotation, TextsFollowTheirGeometryThroughChangesOfItsShapes) {
  ref_ptr<zorCollide::Geometry> const geometry = new zorCollide::Geometry(new zorCollide::Box(0.1, 0.1, 0.1));
  zorOSG::createVisual(geometry.get(), root);
  for (char const* text : {"one", "two", "three"})
    EXPECT_TRUE(zorOSG::addText(geometry.get(), root, text, Vec3(0, 0, 0.5)));
  geometry->add(new zorCollide::Sphere(0.2)); // a new visual
  geometry->setPosition(Vec3(1, 0, 0));
  EXPECT_TRUE(zorOSG::removeText(geometry.get(), root, 1));
  zorTest::update(*root);
  for (size_t index : {0u, 1u}) {
    osgText::Text* const text = zorOSG::findText(geometry.get(), root, index);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->getText().createUTF8EncodedString(), index == 0 ? "one" : "three");
    osg::Vec3d const at = osg::Vec3d(text->getPosition()) * text->getParent(0)->getWorldMatrices()[0];
    EXPECT_LT((at - osg::Vec3d(1, 0, 0.5)).length(), 1e-5);
  }
}

TEST_F(Annotation, PanelsStandOnTheScreen) {
  int owner = 0;
  zorOSG::Panel* const panel =
      zorOSG::createPanel(root, zor::Vec2(0.5, 0.25), zor::Vec2(0.25, 0.5), zor::Vec4(1, 1, 1, 1), &owner);
  auto const expectAt = [](osg::Image const& image, double x0, double y0, double x1, double y1) {
    Lit const lit(image);
    EXPECT_NEAR(lit.box.xMin(), x0 * image.s(), 2);
    EXPECT_NEAR(lit.box.xMax(), x1 * image.s(), 2);
    EXPECT_NEAR(lit.box.yMin(), y0 * image.t(), 2);
    EXPECT_NEAR(lit.box.yMax(), y1 * image.t(), 2);
  };
  expectAt(*picture(), 0.5, 0.25, 0.75, 0.75);
  scene.view.camera().setViewport(0, 0, 120, 150);
  look({3, 4, 5});
  expectAt(*picture(), 0.5, 0.25, 0.75, 0.75);
  panel->setPosition(zor::Vec2(0, 0));
  panel->setSize(zor::Vec2(1, 0.1));
  expectAt(*picture(), 0, 0, 1, 0.1);

  EXPECT_FALSE(root->getBound().valid()) << "a panel takes no room in the scene";
  EXPECT_TRUE(panel->match(&owner));
  EXPECT_FALSE(panel->match(root));
  EXPECT_FALSE(panel->match(nullptr));
  osg::ref_ptr<zorOSG::Panel> const kept = panel;
  osg::ref_ptr<osg::Group> const elsewhere = new osg::Group;
  panel->uninitialize(elsewhere);
  EXPECT_TRUE(panel->isValid());
  panel->uninitialize(scene.decorator);
  EXPECT_FALSE(panel->isValid());
  EXPECT_EQ(Lit(*picture()).count, 0);
}

TEST_F(Annotation, PanelsAreSeenThroughAndLieOverTheScene) {
  scene.decorator->setBackgroundColor(Vec3(0, 0, 1));
  root->addChild(zorTest::box(2, {0, -5, 0})); // nearer than anything else
  zorOSG::Panel* const panel =
      zorOSG::createPanel(root, zor::Vec2(), zor::Vec2(1, 1), zor::Vec4(1, 0, 0, 0.5));
  root->getOrCreateStateSet()->setAttributeAndModes(
      new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::LINE)); // not for the panel
  osg::ref_ptr<osg::Image> image = picture();
  osg::Vec4 const corner = image->getColor(5u, 5u);
  EXPECT_NEAR(corner.r(), 0.5, 0.02);
  EXPECT_NEAR(corner.b(), 0.5, 0.02);
  panel->setColor(zor::Vec4(0, 1, 0, 1));
  image = picture();
  for (unsigned int x : {5u, 100u})
    EXPECT_EQ(image->getColor(x, 75u), osg::Vec4(0, 1, 0, 1));
  EXPECT_THROW(panel->setSize(zor::Vec2(-1, 1)), std::invalid_argument);
  EXPECT_THROW(panel->setPosition(zor::Vec2(NaN, 1)), std::invalid_argument);
  EXPECT_THROW(panel->setColor(zor::Vec4(NaN, 1, 1, 1)), std::invalid_argument);
  EXPECT_EQ(panel->getSize(), zor::Vec2(1, 1));
  EXPECT_EQ(zorOSG::createPanel(nullptr, zor::Vec2(), zor::Vec2(), zor::Vec4()), nullptr);
}

TEST_F(Annotation, LinesAreDrawnHoweverShortAndNotOutOfView) {
  zor::Vec4 const white(1, 1, 1, 1);
  root->addChild(zorOSG::createPolyline({Vec3(0, 0, 0), Vec3(0.002, 0, 0), Vec3(0.002, 0, 0.002)}, white, 5));
  EXPECT_GT(Lit(*picture()).count, 3);
  osg::ref_ptr<osg::Geode> const far = zorOSG::createLine(Vec3(9, 0, 0), Vec3(9.1, 0, 0), white, 5);
  struct Counter : osg::Drawable::DrawCallback {
    void drawImplementation(osg::RenderInfo& info, osg::Drawable const* drawable) const override {
      ++count;
      drawable->drawImplementation(info);
    }
    mutable int count = 0;
  };
  osg::ref_ptr<Counter> const counter = new Counter;
  far->getDrawable(0)->setDrawCallback(counter);
  root->addChild(far);
  picture();
  EXPECT_EQ(counter->count, 0);
}

TEST_F(Annotation, GridsFillABox) {
  osg::Geode* const grid =
      zorOSG::create3DGrid(2, 3, 4, Vec3(-1, -1, -1), Vec3(2, 0, 0), Vec3(0, 2, 0), Vec3(0, 0, 2), 1, root);
  osg::Geometry const& mesh = *grid->getDrawable(0)->asGeometry();
  EXPECT_EQ(mesh.getVertexArray()->getNumElements(), 2u * (4 * 5 + 3 * 5 + 3 * 4));
  EXPECT_EQ(mesh.getBoundingBox()._min, osg::Vec3(-1, -1, -1));
  EXPECT_EQ(mesh.getBoundingBox()._max, osg::Vec3(1, 1, 1));
  osg::ref_ptr<osg::Image> const image = picture(); // two cells across, four up
  EXPECT_GT(near(*image, {0, -1, 0.25}), 0.2);
  EXPECT_GT(near(*image, {0.25, -1, 0.5}), 0.2);
  EXPECT_LT(near(*image, {0.5, -1, 0.25}), 0.1);
  osg::Vec3 const x(1, 0, 0), y(0, 1, 0), z(0, 0, 1), bad(0, static_cast<float>(NaN), 0);
  EXPECT_THROW(zorOSG::create3DGrid(0, 1, 1, osg::Vec3(), x, y, z, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::create3DGrid(1, 201, 1, osg::Vec3(), x, y, z, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::create3DGrid(1, 1, 1, osg::Vec3(), x, bad, z, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::create3DGrid(1, 1, 1, osg::Vec3(), x, y, z, 0), std::invalid_argument);
  EXPECT_THROW(zorOSG::create3DGrid(1, 1, 1, Vec3(), Vec3(), Vec3(), Vec3(), 1, nullptr),
               std::invalid_argument);
  EXPECT_THROW(zorOSG::createGrid(1, 1, bad, x, y), std::invalid_argument);
  zor::Vec4 const white(1, 1, 1, 1);
  EXPECT_THROW(zorOSG::createLine(Vec3(), Vec3(NaN, 0, 0), white, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::createPolyline({Vec3(), Vec3(NaN, 0, 0)}, white, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::createPolyline({Vec3()}, white, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::createSphere(Vec3(0, NaN, 0), white, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::createCubeLines(Vec3(0, NaN, 0), Vec3()), std::invalid_argument);
}

TEST_F(Annotation, ListenersHaveTheirContactsDrawn) {
  ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  simulation->add(new zorCollide::Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3())));
  ref_ptr<zor::RigidBody> bodies[2];
  for (int i = 0; i < 2; ++i) {
    bodies[i] = new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Sphere(0.5)));
    bodies[i]->setPosition(Vec3(2 * i - 1, 0, 0.5));
    simulation->add(bodies[i].get());
  }
  ref_ptr<zorSDK::ContactEventListener> const listener = new zorSDK::ContactEventListener;
  listener->addFilter(bodies[1].get());
  ref_ptr<zorSDK::EventListener> const updater = zorOSG::createVisualUpdater(listener.get(), root);
  ASSERT_TRUE(updater);
  simulation->add(listener.get());
  simulation->add(updater.get());
  ASSERT_EQ(root->getNumChildren(), 1u);
  for (int i = 0; i < 30; ++i)
    simulation->stepForward();
  osg::ref_ptr<osg::Image> const image = picture();
  EXPECT_GT(scene.at(*image, {1, 0, 0.0}), 0.3);
  EXPECT_GT(scene.at(*image, {1, 0, 0.25}), 0.3) << "the normal";
  EXPECT_LT(scene.at(*image, {-1, 0, 0.0}), 0.1) << "the filter leaves it out";
  listener->setEnable(false);
  simulation->stepForward();
  EXPECT_EQ(Lit(*picture()).count, 0);
  simulation->remove(updater.get());
  EXPECT_EQ(root->getNumChildren(), 0u);

  ref_ptr<zorSDK::EventListener> const other = new zorSDK::StepEventListener;
  EXPECT_EQ(zorOSG::createVisualUpdater(other.get(), root), nullptr);
  EXPECT_EQ(zorOSG::createVisualUpdater(nullptr, root), nullptr);
  EXPECT_EQ(zorOSG::createVisualUpdater(listener.get(), nullptr), nullptr);
}

} // namespace
