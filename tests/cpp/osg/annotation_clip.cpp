// Clip planes: what lies behind them is not drawn, by whatever program, and casts no shadow.

#include "DecoratorScene.h"
#include "SceneProbe.h"

#include <zor/ParticleSystem.h>
#include <zorOSG/ClipPlane.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/Primitives.h>
#include <zorOSG/RenderState.h>

#include <limits>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

using zor::ref_ptr;
using zor::Vec3;
using zorOSG::ClipPlane;

namespace {

using Clip = osg::ref_ptr<ClipPlane>;

TEST(ClipPlaneTest, IsGivenByPlanePointOrConstants) {
  Clip const first = new ClipPlane(zor::Plane(Vec3(0, 0, 1), Vec3(5, 0, 2)));
  EXPECT_EQ(first->getPosition(), Vec3(0, 0, 2)) << "nearest to the origin";
  Clip const second = new ClipPlane(Vec3(1, 2, 3), Vec3(0, 0, -4));
  EXPECT_EQ(second->getPosition(), Vec3(1, 2, 3));
  EXPECT_EQ(second->getNormal(), Vec3(0, 0, -1));
  second->setNormal(Vec3(2, 0, 0));
  EXPECT_EQ(second->getPlane(), zor::Plane(1, 0, 0, -1)) << "turned about its position";
  second->setPosition(Vec3(4, 0, 0));
  EXPECT_EQ(second->getPlane(), zor::Plane(1, 0, 0, -4));
  Clip const third = new ClipPlane(0, 3, 0, -6);
  EXPECT_EQ(third->getPlane(), zor::Plane(Vec3(0, 1, 0), Vec3(0, 2, 0)));

  double const nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(second->setNormal(Vec3()), std::invalid_argument);
  EXPECT_THROW(second->setNormal(Vec3(nan, 0, 0)), std::invalid_argument);
  EXPECT_THROW(second->setPosition(Vec3(0, nan, 0)), std::invalid_argument);
  EXPECT_THROW(new ClipPlane(0, 0, 0, 1), std::invalid_argument);
  EXPECT_THROW(new ClipPlane(Vec3(), Vec3(0, 0, 0)), std::invalid_argument);
  EXPECT_EQ(second->getPlane(), zor::Plane(1, 0, 0, -4));
}

TEST(ClipPlaneTest, EightAtATimeAndNumbersAreFreeAgain) {
  for (int round = 0; round < 2; ++round) {
    std::vector<Clip> planes;
    std::set<unsigned int> numbers;
    for (int i = 0; i < 8; ++i) {
      planes.push_back(new ClipPlane(0, 0, 1, 0));
      numbers.insert(planes.back()->getClipPlane(0)->getClipPlaneNum());
    }
    EXPECT_EQ(numbers.size(), 8u);
    EXPECT_THROW(new ClipPlane(0, 0, 1, 0), std::runtime_error);
    planes[3]->setEnable(false);
    EXPECT_EQ(planes[3]->getNumClipPlanes(), 0u);
    planes.push_back(new ClipPlane(0, 0, 1, 0));
    EXPECT_THROW(planes[3]->setEnable(true), std::runtime_error);
    EXPECT_FALSE(planes[3]->getEnable());
  }
}

/** White balls, lines and a label in a row along x, in a decorated scene over black. */
class ClipPictures : public testing::Test {
protected:
  ClipPictures() {
    scene.decorator->setBackgroundColor(Vec3());
    scene.view.lookAt({0, -12, 0}, {});
    for (int x = -2; x <= 2; ++x)
      content->addChild(zorTest::place(new osg::Sphere({}, 0.4f), osg::Matrixd::translate(x, 0, 1)));
    for (int x = -2; x <= 2; ++x)
      content->addChild(
          zorOSG::createLine(Vec3(x - 0.3, 0, -1), Vec3(x + 0.3, 0, -1), zor::Vec4(1, 1, 1, 1), 5));
  }

  /** Which of the things in a row are seen: a digit for each x from -2 to 2. */
  std::string seen(double z) {
    osg::ref_ptr<osg::Image> const image = scene.render(2);
    zorTest::keepImage(*image, "clip_planes");
    std::string row;
    for (int x = -2; x <= 2; ++x)
      row += scene.at(*image, {static_cast<double>(x), 0, z}) > 0.08 ? '1' : '0';
    return row;
  }

  zorTest::DecoratorScene scene;
  osg::ref_ptr<osg::Group> content = new osg::Group;
};

TEST_F(ClipPictures, KeepTheSideOfTheNormal) {
  Clip const plane = new ClipPlane(Vec3(0.5, 0, 0), Vec3(-1, 0, 0));
  scene.decorator->addChild(plane);
  plane->addChild(content);
  EXPECT_EQ(seen(1), "11100");
  EXPECT_EQ(seen(-1), "11100") << "lines have a program of their own";
  plane->setPosition(Vec3(-0.5, 0, 0));
  EXPECT_EQ(seen(1), "11000");
  plane->setEnable(false);
  EXPECT_EQ(seen(1), "11111");
  plane->setEnable(true);
  plane->setNormal(Vec3(1, 0, 0));
  EXPECT_EQ(seen(1), "00111");
}

TEST_F(ClipPictures, NestAndStandSideBySide) {
  Clip const left = new ClipPlane(Vec3(-1.5, 0, 0), Vec3(1, 0, 0)),
             right = new ClipPlane(Vec3(0.5, 0, 0), Vec3(-1, 0, 0)), other = new ClipPlane(0, 0, 1, 5);
  scene.decorator->addChild(left);
  left->addChild(right);
  right->addChild(content);
  scene.decorator->addChild(other);
  other->addChild(zorTest::place(new osg::Sphere({}, 0.4f), osg::Matrixd::translate(2, 0, 1)));
  EXPECT_EQ(seen(1), "01101") << "the last one is below another plane";

  // A plane moves with the nodes above it.
  osg::ref_ptr<osg::MatrixTransform> const shifted =
      new osg::MatrixTransform(osg::Matrixd::translate(1, 0, 0));
  scene.decorator->replaceChild(left, shifted);
  shifted->addChild(left);
  EXPECT_EQ(seen(1), "00111");
}

TEST_F(ClipPictures, WhatIsCutAwayCastsNoShadow) {
  scene.view.lookAt({0, -12, 14}, {});
  osg::ref_ptr<osg::MatrixTransform> const box = zorTest::box(1, {1.5, 0, 1.5});
  Clip const plane = new ClipPlane(Vec3(0, 0, 0.5), Vec3(0, 0, -1));
  scene.decorator->addChild(zorTest::ground(5));
  scene.decorator->addChild(plane);
  plane->addChild(box);
  for (auto const method : {zorOSG::SceneDecorator::SOFT_SHADOWMAP, zorOSG::SceneDecorator::SHADOWTEXTURE,
                            zorOSG::SceneDecorator::SHADOWVOLUME}) {
    SCOPED_TRACE(method);
    scene.decorator->setShadowMethod(method);
    plane->setEnable(false);
    osg::ref_ptr<osg::Image> const whole = scene.render(3);
    plane->setEnable(true);
    plane->setPosition(Vec3(0, 0, 1.5)); // through the middle
    osg::ref_ptr<osg::Image> const half = scene.render(3);
    plane->setPosition(Vec3(0, 0, 0.5)); // below all of it
    osg::ref_ptr<osg::Image> const none = scene.render(3);
    // Light comes at 45 degrees: the upper half casts the far half of the shadow.
    osg::Vec3d const near(0, 0, 0), far(-0.75, 0, 0), lit(-3, 0, 0);
    double const inLight = scene.at(*whole, lit);
    for (osg::Vec3d const& place : {near, far}) {
      EXPECT_LT(scene.at(*whole, place), 0.7 * inLight);
      EXPECT_NEAR(scene.at(*none, place), inLight, 0.05);
    }
    EXPECT_LT(scene.at(*half, near), 0.7 * inLight);
    EXPECT_NEAR(scene.at(*half, far), inLight, 0.05);
  }
}

TEST_F(ClipPictures, OutlinesGoAroundWhatIsLeft) {
  Clip const plane = new ClipPlane(Vec3(0, 0, 0.8), Vec3(0, 0, -1));
  osg::ref_ptr<osg::MatrixTransform> const box = zorTest::place(new osg::Box({}, 3.0f), osg::Matrixd());
  osg::ref_ptr<osg::Group> const outlined = new osg::Group;
  outlined->addChild(box);
  zorTest::paint(*box, {0, 0, 0, 1});
  zorOSG::setEnableOutline(outlined, true, zorRender::Color(1, 1, 1), 4);
  scene.decorator->addChild(plane);
  plane->addChild(outlined);
  // Heights above the upper edge of the box, the cut, the lower edge and its left one, half a line away.
  std::vector<osg::Vec3d> const places = {{0, -1.5, 1.57},  {0, -1.5, 0.87},    {0, -1.5, -1.57},
                                          {-1.57, -1.5, 0}, {-1.57, -1.5, 1.2}, {0, -1.5, 0.5}};
  auto const lines = [&](char const* name) {
    osg::ref_ptr<osg::Image> const image = scene.render(2);
    zorTest::keepImage(*image, name);
    std::string found;
    for (osg::Vec3d const& at : places)
      found += scene.at(*image, at) > 0.5 ? '1' : '0';
    return found;
  };
  EXPECT_EQ(lines("outline_cut"), "011100");
  plane->setEnable(false);
  EXPECT_EQ(lines("outline_whole"), "101110");
  // The plane below the outlined node.
  plane->setEnable(true);
  plane->removeChild(outlined);
  scene.decorator->replaceChild(plane, outlined);
  outlined->replaceChild(box, plane);
  plane->addChild(box);
  EXPECT_EQ(lines("outline_cut_below"), "011100");
  Clip const left = new ClipPlane(Vec3(-1, 0, 0), Vec3(1, 0, 0));
  scene.decorator->replaceChild(outlined, left);
  left->addChild(outlined);
  EXPECT_EQ(lines("outline_cut_twice"), "011000");
}

TEST_F(ClipPictures, ParticlesAreCutWhereverTheyAreDrawn) {
  ref_ptr<zor::ParticleSystem> const particles = new zor::ParticleSystem;
  for (int x = -2; x <= 2; ++x)
    particles->addParticle(Vec3(x, 0, 1), 0.4);
  zorOSG::createVisual(particles.get(), scene.decorator.get());
  Clip plane = new ClipPlane(Vec3(0.5, 0, 0), Vec3(-1, 0, 0));
  plane->clipAgainstParticleSystem(); // none
  plane->setParticleSystemToClip(particles.get());
  EXPECT_EQ(seen(1), "11111") << "not yet";
  plane->clipAgainstParticleSystem();
  EXPECT_EQ(seen(1), "11100");
  plane->setPosition(Vec3(-0.5, 0, 0));
  EXPECT_EQ(seen(1), "11000");
  particles->setPosition(0, Vec3(2, 0, 1));
  particles->setPosition(4, Vec3(-2, 0, 1));
  EXPECT_EQ(seen(1), "11000");
  Clip const second = new ClipPlane(Vec3(-1.5, 0, 0), Vec3(1, 0, 0));
  second->setParticleSystemToClip(particles.get());
  second->clipAgainstParticleSystem();
  EXPECT_EQ(seen(1), "01000");
  plane->setEnable(false);
  EXPECT_EQ(seen(1), "01111");
  second->setParticleSystemToClip(nullptr);
  plane->setEnable(true);
  EXPECT_EQ(seen(1), "11000");
  plane = nullptr;
  EXPECT_EQ(seen(1), "11111");
}

} // namespace
