// Paths of bodies and frames, and the colours of numbers.

#include "DecoratorScene.h"
#include "SceneProbe.h"

#include <zor/ObserverFrame.h>
#include <zor/RigidBody.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/Sphere.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/ScalarColorMap.h>
#include <zorOSG/Trajectories.h>
#include <zorSDK/Simulation.h>

#include <limits>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

using zor::ref_ptr;
using zor::Vec3;
using zorOSG::ScalarColorMap;

namespace {

/** Bodies that fly along x without gravity, seen from the front over black; a unit of length is about ten
 * pixels. */
class Trails : public testing::Test {
protected:
  Trails() {
    simulation->setUniformGravity(Vec3());
    simulation->setTimeStep(0.1);
    scene.decorator->setBackgroundColor(Vec3());
    scene.view.lookAt({0, -20, 0}, {});
    scene.decorator->addChild(root);
  }

  ref_ptr<zor::RigidBody> addBody(double z, double speed) {
    ref_ptr<zor::RigidBody> const body = new zor::RigidBody;
    body->setPosition(Vec3(-4, 0, z));
    body->setVelocity(Vec3(speed, 0, 0));
    simulation->add(body.get());
    return body;
  }

  void step(int count) {
    for (int i = 0; i < count; ++i) {
      simulation->stepForward();
      zorTest::update(*root);
    }
  }

  osg::ref_ptr<osg::Image> picture() {
    osg::ref_ptr<osg::Image> const image = scene.render(2);
    zorTest::keepImage(*image, "trails");
    return image;
  }

  /** The colour at a point, with what is next to it, as lines are thin. */
  osg::Vec4 colorAt(osg::Image const& image, double x, double z) {
    osg::Vec2d const at = scene.view.project({x, 0, z});
    osg::Vec4 most;
    for (int shift = -2; shift <= 2; ++shift) {
      osg::Vec4 const color = image.getColor(static_cast<unsigned int>(at.x()),
                                             static_cast<unsigned int>(static_cast<int>(at.y()) + shift));
      for (int k = 0; k < 3; ++k)
        most[k] = std::max(most[k], color[k]);
    }
    return most;
  }

  double lightAt(osg::Image const& image, double x, double z) {
    osg::Vec4 const color = colorAt(image, x, z);
    return std::max({color.r(), color.g(), color.b()});
  }

  zorTest::DecoratorScene scene;
  osg::ref_ptr<osg::Group> root = new osg::Group;
  ref_ptr<zorSDK::Simulation> simulation = new zorSDK::Simulation;
};

TEST_F(Trails, FadeAndEndAfterTheirPositions) {
  addBody(0, 10);
  osg::Geode* const trails = zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 1, 7);
  osg::Drawable* const drawable = trails->getDrawable(0);
  EXPECT_EQ(static_cast<void*>(zorOSG::findRigidBodySystemDrawable(root)), dynamic_cast<void*>(drawable));
  EXPECT_FALSE(drawable->getBoundingBox().valid()) << "a point is no line";
  step(8); // from -4 to 4, and the last six pieces are shown
  EXPECT_NEAR(drawable->getBoundingBox().xMin(), -2, 1e-4);
  EXPECT_NEAR(drawable->getBoundingBox().xMax(), 4, 1e-4);
  osg::ref_ptr<osg::Image> const image = picture();
  EXPECT_GT(lightAt(*image, 3.8, 0), 0.7);
  EXPECT_NEAR(lightAt(*image, 1, 0), 0.5 * lightAt(*image, 3.9, 0), 0.12);
  EXPECT_LT(lightAt(*image, -1.7, 0), 0.15);
  EXPECT_EQ(lightAt(*image, -3, 0), 0);

  zorTest::update(*root);
  EXPECT_NEAR(drawable->getBoundingBox().xMin(), -2, 1e-4) << "no step, no piece";
  trails->getParent(0)->removeChild(trails);
  EXPECT_EQ(zorOSG::findRigidBodySystemDrawable(root), nullptr);
}

TEST_F(Trails, HaveTheColourOfTheSpeedWhereItWas) {
  ref_ptr<zor::RigidBody> const body = addBody(0, 10);
  zorRender::ColorVector const colors = {zorRender::Color(0, 0, 1), zorRender::Color(1, 0, 0)};
  ref_ptr<ScalarColorMap> const map = new ScalarColorMap(colors, 5, 10);
  zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 1, 100, map.get());
  step(4); // -4 to 0
  body->setVelocity(Vec3(5, 0, 0));
  step(8); // 0 to 4
  osg::ref_ptr<osg::Image> const image = picture();
  osg::Vec4 const fast = colorAt(*image, -0.3, 0), slow = colorAt(*image, 3.5, 0);
  EXPECT_GT(fast.r(), 0.1);
  EXPECT_EQ(fast.b(), 0);
  EXPECT_GT(slow.b(), 0.7);
  EXPECT_EQ(slow.r(), 0);
}

TEST_F(Trails, OfBodiesThatComeAndGo) {
  ref_ptr<zor::RigidBody> const first = addBody(2, 10), second = addBody(0, 10);
  zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 1, 30);
  step(2);
  simulation->remove(first.get());
  ref_ptr<zor::RigidBody> const third = addBody(-2, 10);
  step(4);
  osg::ref_ptr<osg::Image> const image = picture();
  EXPECT_GT(lightAt(*image, -2.3, 2), 0.05) << "what was there fades";
  EXPECT_EQ(lightAt(*image, 1, 2), 0);
  EXPECT_GT(lightAt(*image, 1, 0), 0.5);
  EXPECT_GT(lightAt(*image, -1, -2), 0.5);
  double slope = 0; // no line leads from one body to another
  for (double z : {-1.0, 1.0})
    for (double x = -4; x < 3; x += 0.1)
      slope += lightAt(*image, x, z);
  EXPECT_EQ(slope, 0);
}

TEST_F(Trails, StartAnewWhenTimeGoesBack) {
  ref_ptr<zor::RigidBody> const body = addBody(0, 10);
  osg::Geode* const trails = zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 1, 30);
  step(5);
  simulation->setTimeStamp(0);
  body->setPosition(Vec3(-4, 0, 2));
  zorTest::update(*root);
  EXPECT_FALSE(trails->getDrawable(0)->getBoundingBox().valid());
  step(2);
  osg::BoundingBox const& box = trails->getDrawable(0)->getBoundingBox();
  EXPECT_NEAR(box.zMin(), 2, 1e-4);
  EXPECT_NEAR(box.xMin(), -4, 1e-4);
  EXPECT_NEAR(box.xMax(), -2, 1e-4);

  body->setPosition(Vec3(0, 0, 2));
  simulation = nullptr; // observed only
  zorTest::update(*root);
}

TEST_F(Trails, HaveGapsWhereThingsWerePutSomewhereElse) {
  ref_ptr<zor::RigidBody> const put = addBody(1, 2), carried = addBody(0, 0), struck = addBody(-1, 0);
  carried->add(new zorCollide::Geometry(new zorCollide::Sphere(0.2)));
  carried->setMotionControl(zor::RigidBody::KINEMATICS);
  ref_ptr<zor::ObserverFrame> const frame = new zor::ObserverFrame;
  frame->attachWithLocalTransform(put.get(), zor::AffineMatrix4x4(Vec3(0, 0, 1)));
  simulation->add(frame.get());
  zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 1, 100);
  zorOSG::createFrameTrajectoryDrawable(simulation.get(), root, 100, zor::Vec4f(1, 1, 1, 1));
  auto const run = [&] {
    for (int i = 0; i < 10; ++i) {
      carried->setPosition(carried->getPosition() + Vec3(0.18, 0, 0));
      step(1);
    }
  };
  run();
  put->setPosition(Vec3(1, 0, 1));
  carried->setPosition(carried->getPosition() + Vec3(2, 0, 0));
  struck->setVelocity(Vec3(4, 0, 0));
  run();
  osg::ref_ptr<osg::Image> const image = picture();
  auto const row = [&](double z) {
    std::string seen;
    for (double const x : {-3.0, -1.0, 1.4})
      seen += lightAt(*image, x, z) > 0.1 ? '1' : '0';
    return seen;
  };
  EXPECT_EQ(row(1), "101");
  EXPECT_EQ(row(2), "101") << "a frame goes with its body";
  EXPECT_EQ(row(0), "101") << "moved by less than its radius at a time";
  EXPECT_EQ(row(-1), "110") << "faster all at once";
}

TEST_F(Trails, OfThePartThatIsAskedFor) {
  for (int i = 0; i < 1000; ++i)
    addBody(i * 0.001, 10);
  auto* const quarter = zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 0.25, 3);
  auto* const none = zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 0, 3);
  auto* const short1 = zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 1, 1);
  step(3);
  for (osg::Geode* const empty : {none, short1})
    EXPECT_FALSE(empty->getDrawable(0)->getBoundingBox().valid());
  EXPECT_TRUE(quarter->getDrawable(0)->getBoundingBox().valid());
}

TEST_F(Trails, OfFrames) {
  ref_ptr<zor::RigidBody> const body = addBody(0, 10);
  ref_ptr<zor::ObserverFrame> const frame =
      new zor::ObserverFrame(body.get(), zor::AffineMatrix4x4::translate(0, 0, 1.5));
  ref_ptr<zor::ObserverFrame> const off =
      new zor::ObserverFrame(body.get(), zor::AffineMatrix4x4::translate(0, 0, -1.5));
  off->setEnable(false);
  simulation->add(frame.get());
  simulation->add(off.get());
  osg::Geode* const trails =
      zorOSG::createFrameTrajectoryDrawable(simulation.get(), root, 50, zor::Vec4f(0, 1, 0, 1));
  EXPECT_EQ(static_cast<void*>(zorOSG::findFrameTrajectoryDrawable(root)),
            dynamic_cast<void*>(trails->getDrawable(0)));
  EXPECT_EQ(zorOSG::findRigidBodySystemDrawable(root), nullptr);
  step(6);
  osg::ref_ptr<osg::Image> const image = picture();
  osg::Vec4 const color = colorAt(*image, 1.7, 1.5);
  EXPECT_GT(color.g(), 0.7);
  EXPECT_EQ(color.r(), 0);
  EXPECT_EQ(lightAt(*image, 1.7, -1.5), 0);
}

TEST_F(Trails, RefuseBadInput) {
  double const nan = std::numeric_limits<double>::quiet_NaN();
  for (double const sampling : {-0.1, 1.1, nan})
    EXPECT_THROW(zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, sampling, 5),
                 std::invalid_argument);
  EXPECT_THROW(zorOSG::createRigidBodyTrajectoriesVisual(simulation.get(), root, 1, 10001),
               std::invalid_argument);
  EXPECT_THROW(zorOSG::createFrameTrajectoryDrawable(simulation.get(), root, ~zor::UInt(0)),
               std::invalid_argument);
  EXPECT_EQ(zorOSG::createRigidBodyTrajectoriesVisual(nullptr, root, 1, 5), nullptr);
  EXPECT_EQ(zorOSG::createFrameTrajectoryDrawable(simulation.get(), nullptr, 5), nullptr);
  EXPECT_EQ(root->getNumChildren(), 0u);
}

TEST(ScalarColorMapTest, InterpolatesAndStopsAtTheEnds) {
  ref_ptr<ScalarColorMap> const map = new ScalarColorMap(
      {zorRender::Color(0, 0, 0), zorRender::Color(1, 0, 0), zorRender::Color(1, 1, 0, 0.5f)}, 10, 20);
  EXPECT_EQ(map->getColor(12.5), zor::Vec4f(0.5f, 0, 0, 1));
  EXPECT_EQ(map->getColor(17.5), zor::Vec4f(1, 0.5f, 0, 0.75f));
  EXPECT_EQ(map->getColor(17.5, true), zor::Vec4f(1, 0.5f, 0, 0.75f * 0.75f));
  EXPECT_EQ(map->getColor(-1e300), zor::Vec4f(0, 0, 0, 1));
  EXPECT_EQ(map->getColorOSG(std::numeric_limits<double>::infinity()), osg::Vec4(1, 1, 0, 0.5f));
  EXPECT_THROW(map->getColor(std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
  osg::ref_ptr<osgSim::ColorRange> const range = map->getOsgColorRange();
  EXPECT_EQ(range->getColor(17.5f), map->getColorOSG(17.5));
  map->setScalarInterval(3, 3);
  EXPECT_EQ(map->getColor(3), zor::Vec4f(1, 1, 0, 0.5f));
  EXPECT_EQ(map->getColor(2.9), zor::Vec4f(0, 0, 0, 1));
  EXPECT_EQ(range->getMax(), 20) << "as it was then";
}

TEST(ScalarColorMapTest, KeepsItsBoundsInOrder) {
  ref_ptr<ScalarColorMap> const map = new ScalarColorMap(ScalarColorMap::PLASMA, 10, 0);
  auto const bounds = [&] { return std::pair(map->getMinScalar(), map->getMaxScalar()); };
  EXPECT_EQ(bounds(), std::pair(0.0, 10.0));
  map->setMinScalar(20);
  map->setMaxScalar(-1);
  map->setMinScalar(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(bounds(), std::pair(0.0, 10.0)) << "crossing bounds are ignored";
  map->setMinScalar(10);
  map->setMaxScalar(12);
  EXPECT_EQ(bounds(), std::pair(10.0, 12.0));
  map->setScalarInterval(7, -7);
  EXPECT_EQ(bounds(), std::pair(-7.0, 7.0));
  EXPECT_THROW(map->setScalarInterval(0, std::numeric_limits<double>::infinity()), std::invalid_argument);
  EXPECT_THROW(map->setColors({}), std::invalid_argument);
  EXPECT_THROW(map->setColorsFromPreset(static_cast<ScalarColorMap::ColorRangePreset>(11)),
               std::invalid_argument);
  EXPECT_EQ(bounds(), std::pair(-7.0, 7.0));
}

TEST(ScalarColorMapTest, PresetsAreWhatTheyAreCalled) {
  ref_ptr<ScalarColorMap> const map = new ScalarColorMap(ScalarColorMap::RAINBOW, 0, 1);
  auto const brightness = [&](double at) {
    zor::Vec4f const c = map->getColor(at);
    return 0.2126 * c.x() + 0.7152 * c.y() + 0.0722 * c.z();
  };
  for (int preset = 0; preset <= 10; ++preset) {
    map->setColorsFromPreset(static_cast<ScalarColorMap::ColorRangePreset>(preset));
    for (zorRender::Color const& color : map->getColors())
      EXPECT_EQ(color.a(), 1);
    bool const diverges = preset == ScalarColorMap::RAINBOW || preset == ScalarColorMap::COOLWARM ||
                          preset == ScalarColorMap::BLUE_WHITE_RED;
    bool rises = true;
    for (double at = 0; at < 0.995; at += 0.01)
      rises = rises && brightness(at + 0.01) > brightness(at) - 0.004;
    EXPECT_EQ(rises, !diverges) << preset;
    zor::Vec4f const low = map->getColor(0), high = map->getColor(1);
    EXPECT_TRUE(!diverges || (low.z() > 0.7 && low.x() < 0.3 && high.x() > 0.7 && high.z() < 0.3)) << preset;
  }
}

} // namespace
