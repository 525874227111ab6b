// Lines that show what particles do: the forces between them, and their paths.

#include "SceneProbe.h"

#include <zor/ParticleSystem.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/Plane.h>
#include <zorOSG/ParticleVisuals.h>
#include <zorSDK/Simulation.h>

#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

using zor::ref_ptr;
using zor::Vec3;

namespace {

/** Corners and colours of all strips. */
struct Lines {
  explicit Lines(osg::Geode& geode) {
    osg::Geometry const& mesh = *geode.getDrawable(0)->asGeometry();
    auto const& positions = static_cast<osg::Vec3Array const&>(*mesh.getVertexArray());
    auto const& tints = static_cast<osg::Vec4ubArray const&>(*mesh.getColorArray());
    auto const& pieces = static_cast<osg::DrawElementsUInt const&>(*mesh.getPrimitiveSet(0));
    corners.assign(positions.begin(), positions.end());
    colors.assign(tints.begin(), tints.end());
    for (size_t i = 0; i + 1 < pieces.size(); i += 2) {
      if (i == 0 || pieces[i] != pieces[i - 1])
        strips.push_back(1);
      ++strips.back();
    }
  }

  std::vector<osg::Vec3> corners;
  std::vector<osg::Vec4ub> colors;
  std::vector<int> strips; // numbers of corners
};

class ParticleLines : public testing::Test {
protected:
  ParticleLines() {
    simulation->add(particles.get());
    simulation->add(new zorCollide::Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3())));
  }

  /** One frame. */
  void show(int steps) {
    for (int i = 0; i < steps; ++i)
      simulation->stepForward();
    zorTest::update(*root);
  }

  ref_ptr<zorSDK::Simulation> simulation = new zorSDK::Simulation;
  ref_ptr<zor::ParticleSystem> particles = new zor::ParticleSystem("grains");
  osg::ref_ptr<osg::Group> root = new osg::Group;
};

TEST_F(ParticleLines, ContactsAreColouredByTheirForce) {
  particles->addParticle(Vec3(0, 0, 0.1), 0.1);
  particles->addParticle(Vec3(3, 0, 0.1), 0.1);
  particles->addParticle(Vec3(3, 0, 0.3), 0.1);
  double const weight = particles->getMass(0) * 9.81;
  osg::Geode* const all = zorOSG::createParticleContactGraph(particles.get(), root, 0.0, 2 * weight);
  osg::Geode* const strong =
      zorOSG::createParticleContactGraph(particles.get(), root, 1.5 * weight, 3 * weight);
  EXPECT_TRUE(Lines(*all).strips.empty()) << "no step yet";
  show(120);

  Lines const lines(*all);
  ASSERT_EQ(lines.strips, std::vector<int>({2, 2, 2}));
  int red = 0;
  for (size_t i = 0; i < 6; i += 2) {
    bool const onGround = std::abs(lines.corners[i + 1].z()) < 0.01;
    EXPECT_NEAR((lines.corners[i] - lines.corners[i + 1]).length(), onGround ? 0.1 : 0.2, 0.005);
    EXPECT_EQ(lines.colors[i], lines.colors[i + 1]);
    red += lines.colors[i].r() > 200 && lines.colors[i].g() < 60;
  }
  EXPECT_EQ(red, 1) << "what carries two of them";
  Lines const one(*strong);
  ASSERT_EQ(one.strips, std::vector<int>({2}));
  EXPECT_NEAR(one.corners[0].x(), 3, 0.01);

  particles->removeParticles(zor::UInt32Vector{0, 1, 2});
  zorTest::update(*root);
  EXPECT_TRUE(Lines(*all).strips.empty());
  simulation = nullptr; // the visual holds the particles
  zorTest::update(*root);
}

TEST_F(ParticleLines, PathsAreAsLongAsAskedAndFade) {
  simulation->setUniformGravity(Vec3());
  particles->setDefaultColor(zor::Vec4f(1, 0.5f, 0, 1));
  particles->addParticle(Vec3(0, 0, 5), 0.1, Vec3(6, 0, 0));
  osg::Geode* const path = zorOSG::createParticleTrajectoriesVisual(particles.get(), root, 1.0, 4);
  show(0);
  EXPECT_TRUE(Lines(*path).strips.empty()) << "a point is no line";
  for (int i = 0; i < 6; ++i)
    show(2);
  show(0); // nothing has moved
  Lines const lines(*path);
  ASSERT_EQ(lines.strips, std::vector<int>({4}));
  for (size_t k = 0; k < 4; ++k) {
    EXPECT_NEAR(lines.corners[k].x(), 1.2 - 0.2 * static_cast<double>(k), 1e-5);
    EXPECT_EQ(lines.colors[k], osg::Vec4ub(255, 128, 0, static_cast<unsigned char>(255 - 85 * k)));
  }
  EXPECT_NEAR(zorTest::boundsOf(*path).xMax(), 1.2, 1e-5);
  simulation->setTimeStamp(0);
  show(0);
  EXPECT_TRUE(Lines(*path).strips.empty()) << "set back, it begins anew";
  particles->clear();
  show(1);
  EXPECT_TRUE(Lines(*path).strips.empty());
}

TEST_F(ParticleLines, PathsHaveGapsWhereParticlesWerePut) {
  simulation->setUniformGravity(Vec3());
  particles->addParticle(Vec3(0, 0, 5), 0.1, Vec3(6, 0, 0));
  osg::Geode* const path = zorOSG::createParticleTrajectoriesVisual(particles.get(), root, 1.0, 5);
  show(3);
  show(3);
  particles->setPosition(0, Vec3(9, 0, 5));
  show(3);
  EXPECT_EQ(Lines(*path).strips, std::vector<int>({3}));
  show(3);
  EXPECT_EQ(Lines(*path).strips, std::vector<int>({2, 3}));
  particles->setVelocity(0, Vec3(0, 60, 0));
  show(3);
  EXPECT_EQ(Lines(*path).strips, std::vector<int>({3, 2})) << "its own motion, and the oldest has gone";
}

TEST_F(ParticleLines, TheSamePartOfTheParticlesLeavesPaths) {
  simulation->setUniformGravity(Vec3());
  for (int i = 0; i < 2000; ++i)
    particles->addParticle(Vec3(0.5 * i, 0, 5), 0.1, Vec3(0, 1, 0));
  osg::Geode* const quarter = zorOSG::createParticleTrajectoriesVisual(particles.get(), root, 0.25, 3);
  osg::Geode* const none = zorOSG::createParticleTrajectoriesVisual(particles.get(), root, 0.0, 3);
  show(1);
  auto const places = [&] {
    std::set<float> found;
    Lines const lines(*quarter);
    for (osg::Vec3 const& corner : lines.corners)
      found.insert(corner.x());
    return found;
  };
  std::set<float> const before = places();
  EXPECT_NEAR(static_cast<double>(before.size()), 500, 60);
  EXPECT_TRUE(Lines(*none).strips.empty());
  particles->removeParticle(0);
  show(1);
  std::set<float> after = places();
  after.insert(before.begin(), before.upper_bound(0.0f));
  EXPECT_EQ(after, before);
}

TEST_F(ParticleLines, BadInputIsRefused) {
  double const nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  for (auto const [low, high] :
       {std::pair(-1.0, 1.0), {1.0, 1.0}, {2.0, 1.0}, {nan, 1.0}, {0.0, nan}, {0.0, inf}})
    EXPECT_THROW(zorOSG::createParticleContactGraph(particles.get(), root, low, high), std::invalid_argument);
  for (double const sampling : {-0.1, 1.1, nan})
    EXPECT_THROW(zorOSG::createParticleTrajectoriesVisual(particles.get(), root, sampling, 9),
                 std::invalid_argument);
  EXPECT_EQ(root->getNumChildren(), 0u);
  EXPECT_EQ(zorOSG::createParticleContactGraph(nullptr, root, 0, 1), nullptr);
  EXPECT_EQ(zorOSG::createParticleTrajectoriesVisual(particles.get(), nullptr, 1, 9), nullptr);
  osg::Geode* const endless =
      zorOSG::createParticleTrajectoriesVisual(particles.get(), root, 1, ~zor::UInt(0));
  particles->addParticle(Vec3(0, 0, 1), 0.1);
  show(1);
  show(1);
  EXPECT_EQ(Lines(*endless).strips, std::vector<int>({2}));
}

} // namespace
