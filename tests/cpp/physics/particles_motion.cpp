// Particles that fly, fall, bounce, roll and lie in piles: against closed forms where there are some.

#include <limits>

#include <gmock/gmock.h>

#include "ParticleFixture.h"

namespace {

constexpr double G = 9.81;
constexpr double R = 0.05;

class ParticleMotion : public ParticleFixture {};

TEST_F(ParticleMotion, FreeFlightIsThatOfTheIntegrationToRounding) {
  particles->addParticle(zor::Vec3(1, 2, 3), R, zor::Vec3(4, 0, 5));
  particles->setAngularVelocity(0, zor::Vec3(0, 0, 2));
  particles->addForce(0, zor::Vec3(60 * particles->getMass(0), 0, 0)); // 1 m/s in the first step
  simulation->stepForward();
  EXPECT_NEAR(particles->getVelocity(0).x(), 5, 1e-12);
  EXPECT_EQ(particles->getForce(0), zor::Vec3());
  double const x = particles->getPosition(0).x();
  run(1.0 - 1.0 / 60);
  EXPECT_NEAR(particles->getPosition(0).x(), x + 5 * 59.0 / 60, 1e-9);
  EXPECT_NEAR(particles->getVelocity(0).z(), 5 - G, 1e-9);
  // Four parts of a step: the parabola but for half a part.
  EXPECT_NEAR(particles->getPosition(0).z(), 3 + 5 - G / 2 - G / 2 / 240, 1e-2);
  EXPECT_TRUE(particles->getRotation(0).equals(zor::Quat(2, zor::Vec3(0, 0, 1)), 1e-9));
}

TEST_F(ParticleMotion, BouncesAsHighAsRestitutionSays) {
  zor::ref_ptr<zor::Material> const ball = makeMaterial(0.5, 0.8), floor = makeMaterial(0.5, 0);
  addGround()->setMaterial(floor.get());
  particles->setMaterial(ball.get());
  particles->addParticle(zor::Vec3(0, 0, R + 1), R);
  run(0.46); // it lands after 0.4515 s
  double top = 0;
  for (int i = 0; i < 40; ++i) {
    simulation->stepForward();
    top = std::max(top, particles->getPosition(0).z() - R);
  }
  EXPECT_NEAR(top, 0.64, 0.03); // the greater of the two
  zor::ref_ptr<zor::ContactMaterial> const dead = new zor::ContactMaterial(ball.get(), floor.get());
  dead->setRestitution(0);
  simulation->add(dead.get());
  run(2);
  EXPECT_NEAR(particles->getPosition(0).z(), R, 0.01 * R);
  EXPECT_LT(particles->getVelocity(0).length(), 1e-3);
}

TEST_F(ParticleMotion, CollisionsKeepMomentumAndExchangeItByRestitution) {
  simulation->setUniformGravity(zor::Vec3());
  for (double const restitution : {0.0, 0.5, 1.0}) {
    particles->clear();
    zor::ref_ptr<zor::Material> const material = makeMaterial(0.3, restitution);
    particles->setMaterial(material.get());
    particles->addParticle(zor::Vec3(0, 0, 0), R, zor::Vec3(2, 0.4, 0));
    particles->addParticle(zor::Vec3(0.3, 0, 0), R, zor::Vec3(-1, 0.4, 0));
    particles->setMass(1, 2 * particles->getMass(0));
    zor::Vec3 const before = particles->getMomentum();
    run(0.5);
    EXPECT_TRUE(particles->getMomentum().equals(before, 1e-6 * before.length())) << restitution;
    EXPECT_NEAR((particles->getVelocity(1) - particles->getVelocity(0)).x(), 3 * restitution, 1e-3);
  }
}

TEST_F(ParticleMotion, SlidingBallEndsUpRolling) {
  addGround()->setMaterial(makeMaterial(0.4, 0).get());
  particles->setMaterial(makeMaterial(0.4, 0).get());
  particles->addParticle(zor::Vec3(0, 0, R), R, zor::Vec3(2, 0, 0));
  run(1.5);
  EXPECT_NEAR(particles->getVelocity(0).x(), 2 * 5.0 / 7, 0.01); // whatever the friction
  EXPECT_NEAR(particles->getAngularVelocity(0).y() * R, 2 * 5.0 / 7, 0.01);
  particles->setRollingResistance(0.1); // slows it down by 5/7 of 0.1 g
  run(0.5);
  EXPECT_NEAR(particles->getVelocity(0).x(), 2 * 5.0 / 7 - 5.0 / 7 * 0.1 * G * 0.5, 0.03);
}

TEST_F(ParticleMotion, ColumnOfFiftyStandsInATube) {
  addGround();
  for (int const side : {-1, 1}) {
    addFixed(new zorCollide::Box(zor::Vec3(0.1, 1, 10)), zor::Vec3(side * (0.1 + R), 0, 9));
    addFixed(new zorCollide::Box(zor::Vec3(1, 0.1, 10)), zor::Vec3(0, side * (0.1 + R), 9));
  }
  for (int i = 0; i < 50; ++i)
    particles->addParticle(zor::Vec3(0, 0, R + 2 * R * i), R);
  double const height = particles->getPosition(49).z();
  run(10);
  EXPECT_NEAR(particles->getPosition(49).z(), height, 0.02 * height);
  EXPECT_LT(particles->getKineticEnergy(), 1e-2);
  zor::ParticleContacts const contacts = particles->getContacts();
  double onGround = 0;
  for (size_t i = 0; i < contacts.getNumContacts(); ++i)
    if (contacts.normals[i].z() > 0.9 && contacts.geometries[i])
      onGround += contacts.normalForces[i];
  EXPECT_NEAR(onGround, particles->getTotalMass() * G, 0.05 * particles->getTotalMass() * G);
}

TEST_F(ParticleMotion, HeapGrowsWithFriction) {
  addGround()->setMaterial(makeMaterial(1, 0).get());
  double last = 0;
  for (double const friction : {0.05, 0.3, 0.8}) {
    particles->clear();
    particles->setRollingResistance(friction / 2);
    zor::ref_ptr<zor::Material> const material = makeMaterial(friction, 0);
    particles->setMaterial(material.get());
    addBlock(1000, R, 0.4);
    run(3);
    zor::Vec3 lower, upper;
    particles->getBounds(lower, upper);
    double const slope = upper.z() / (upper.x() - lower.x());
    EXPECT_GT(slope, 1.2 * last) << friction;
    last = slope;
  }
}

TEST_F(ParticleMotion, TwentyThousandStayInABoxAndDoNotDependOnThreads) {
  addContainer(1.25, 20);
  addBlock(20000, R, 1.25);
  run(0.7);
  std::vector<double> const alone = state();
  for (size_t i = 0; i < particles->getNumParticles(); ++i) {
    zor::Vec3 const p = particles->getPosition(i);
    ASSERT_TRUE(std::abs(p.x()) < 1.25 && std::abs(p.y()) < 1.25 && p.z() > 0) << i;
  }
  particles->clear();
  particles->setNumThreads(1);
  addBlock(20000, R, 1.25);
  run(0.7);
  EXPECT_EQ(state(), alone);
}

TEST_F(ParticleMotion, RemovalKeepsTheRestAsItWas) {
  addGround();
  addBlock(400, R, 0.3);
  run(4);
  particles->setColor(100, zor::Vec4f(1, 0, 0, 1));
  zor::UInt const id = particles->getParticleId(100);
  zor::Vec3 const place = particles->getPosition(100);
  EXPECT_EQ(particles->removeParticles({3, 99, 3}), 2u);
  EXPECT_EQ(particles->getParticleId(98), id);
  EXPECT_EQ(particles->getPosition(98), place);
  EXPECT_EQ(particles->getColor(98), zor::Vec4f(1, 0, 0, 1));
  std::vector<double> const before = state();
  simulation->stepForward();
  std::vector<double> const after = state();
  for (size_t i = 0; i < before.size();
       i += 13) // positions: impulses of the last step went to the right ones
    ASSERT_NEAR(after[i + 2], before[i + 2], 0.05 * R) << i / 13;
  particles->setLifetime(98, 0.05);
  run(0.1);
  EXPECT_EQ(particles->getNumParticles(), 397u);
  EXPECT_EQ(particles->removeInside(zor::Vec3(-10, -10, -10), zor::Vec3(10, 10, 10)), 397u);
  run(0.1);
}

TEST_F(ParticleMotion, StrayParticlesDoNotHarmTheOthers) {
  addGround();
  addBlock(600, R, 0.3);
  particles->addParticle(zor::Vec3(1e8, -1e8, 1e8), R, zor::Vec3(1e5, 0, 0));
  zor::UInt const spoilt = particles->addParticle(zor::Vec3(0, 0, 5), R);
  static_cast<double*>(particles->getPositions().data())[3 * spoilt] =
      std::numeric_limits<double>::quiet_NaN();
  particles->setEnable(particles->addParticle(zor::Vec3(0, 0, 6), R), false);
  run(1);
  EXPECT_FALSE(particles->getEnable(spoilt));
  EXPECT_EQ(particles->getPosition(602).z(), 6);
  for (size_t i = 0; i < 600; ++i)
    ASSERT_GT(particles->getPosition(i).z(), 0.8 * R) << i;
}

TEST_F(ParticleMotion, BadInputIsRefusedAndChangesNothing) {
  EXPECT_THROW(particles->addParticle(zor::Vec3(0, 0, std::nan("")), R), std::invalid_argument);
  EXPECT_THROW(particles->addParticle(zor::Vec3(), 0), std::invalid_argument);
  EXPECT_THROW(particles->addParticles({zor::Vec3(), zor::Vec3()}, zor::RealVector{R, R, R}),
               std::invalid_argument);
  EXPECT_THROW(particles->addParticles({zor::Vec3(), zor::Vec3()}, zor::RealVector{R, -R}),
               std::invalid_argument);
  EXPECT_EQ(particles->getNumParticles(), 0u);
  particles->addParticle(zor::Vec3(), R);
  EXPECT_THROW(particles->getPosition(1), std::out_of_range);
  EXPECT_THROW(particles->removeParticles({0, 1}), std::out_of_range);
  EXPECT_THROW(particles->setMass(0, 0), std::invalid_argument);
  EXPECT_THROW(particles->setLifetime(0, -1), std::invalid_argument);
  EXPECT_THROW(particles->setNumSubSteps(0), std::invalid_argument);
  EXPECT_THROW(particles->setNumThreads(65), std::invalid_argument);
  EXPECT_EQ(particles->getNumParticles(), 1u);
  EXPECT_FALSE(simulation->add(particles.get()));
}

} // namespace
