#include <cmath>
#include <limits>

#include <zor/Material.h>
#include <zor/ObserverFrame.h>
#include <zorCollide/Capsule.h>

#include "PhysicsFixture.h"

using zor::Vec3;

namespace {

constexpr double G = 9.81;

class Bodies : public PhysicsFixture {};

TEST_F(Bodies, FreeFallIsSemiImplicitEuler) {
  auto const body = addBox(Vec3(0.5, 0.5, 0.5), Vec3(1, 2, 100));
  body->setVelocity(Vec3(3, 0, 0));
  constexpr int STEPS = 120;
  for (int i = 0; i < STEPS; ++i)
    simulation->stepForward();
  double const dt = simulation->getTimeStep(), n = STEPS;
  EXPECT_NEAR(body->getVelocity().z(), -G * n * dt, 1e-9);
  EXPECT_NEAR(body->getPosition().z(), 100 - G * dt * dt * n * (n + 1) / 2, 1e-9);
  EXPECT_NEAR(body->getPosition().x(), 1 + 3 * n * dt, 1e-9);
  EXPECT_NEAR(body->getAcceleration().z(), -G, 1e-6);
  EXPECT_DOUBLE_EQ(simulation->getTimeStamp(), 2.0);
}

TEST_F(Bodies, SubStepsComeNearerToTheParabola) {
  auto const body = addSphere(0.5, Vec3(0, 0, 100));
  simulation->setNumSubSteps(10);
  run(2.0);
  double const h = simulation->getTimeStep() / 10;
  EXPECT_NEAR(body->getPosition().z(), 100 - 0.5 * G * 2.0 * (2.0 + h), 1e-6);
}

TEST_F(Bodies, ForcesActForOneStep) {
  simulation->setUniformGravity(Vec3());
  auto const body = addBox(Vec3(0.5, 0.5, 0.5), Vec3());
  body->getMassProperties()->setMass(2);
  body->getMassProperties()->setInertiaTensor(Vec3(1, 2, 4));
  body->addForce(Vec3(6, 0, 0));
  body->addTorque(Vec3(0, 0, 8));
  EXPECT_EQ(body->getForce(), Vec3(6, 0, 0));
  run(1.0);
  double const dt = simulation->getTimeStep();
  EXPECT_TRUE(body->getVelocity().equals(Vec3(3 * dt, 0, 0), 1e-12));
  EXPECT_TRUE(body->getAngularVelocity().equals(Vec3(0, 0, 2 * dt), 1e-12));
  EXPECT_EQ(body->getForce(), Vec3());
}

TEST_F(Bodies, MassFollowsShapesAndDensityUntilSet) {
  zor::ref_ptr<zor::Material> const steel = new zor::Material("steel", 7800);
  auto const body = makeBody(new zorCollide::Box(Vec3(0.1, 0.2, 0.3)));
  body->getGeometries()[0]->setMaterial(steel.get());
  body->updateMassProperties();
  double const mass = 7800 * 0.2 * 0.4 * 0.6;
  zor::MassProperties* const properties = body->getMassProperties();
  EXPECT_NEAR(properties->getMass(), mass, 1e-9);
  EXPECT_NEAR(properties->getPrincipalInertiae().x(), mass / 12 * (0.16 + 0.36), 1e-9);
  properties->setMass(1);
  EXPECT_NEAR(properties->getPrincipalInertiae().x(), (0.16 + 0.36) / 12, 1e-9)
      << "inertia goes with the mass";
  body->add(new zorCollide::Geometry(new zorCollide::Sphere(1)));
  EXPECT_DOUBLE_EQ(properties->getMass(), 1) << "a mass that was set stays";
  properties->setAutoGenerate(true);
  EXPECT_NEAR(properties->getMass(), mass + 1000 * 4 * zor::PI / 3, 1e-6);
}

// Two unequal spheres on a bar that is not along an axis: centre of mass and principal axes away from the
// model frame, which must be seen nowhere but in the mass properties.
TEST_F(Bodies, ModelFrameIsApartFromTheCentreOfMass) {
  auto const body = makeBody(new zorCollide::Sphere(0.5), Vec3(), "dumbbell");
  body->add(new zorCollide::Geometry(new zorCollide::Sphere(0.25)),
            zor::AffineMatrix4x4::translate(Vec3(2, 2, 0)));
  double const share = 1.0 / 9.0; // of the smaller sphere
  ASSERT_TRUE(body->getMassProperties()->getCmLocalTranslate().equals(Vec3(2, 2, 0) * share, 1e-9));
  EXPECT_LT(body->getMassProperties()->getInertiaTensor()(0, 1), -1e-3);
  EXPECT_TRUE(body->getPosition().equals(Vec3(), 1e-12));

  simulation->setUniformGravity(Vec3());
  simulation->add(body.get());
  body->setRotation(zor::Quat(0.3, Vec3(0, 0, 1)));
  body->setPosition(Vec3(5, 0, 0));
  Vec3 const centre = body->getCmPosition();
  body->setAngularVelocity(Vec3(0, 0, 1)); // a principal axis: the spin stays
  run(1.0);
  EXPECT_TRUE(body->getCmPosition().equals(centre, 1e-9)) << "turns about its centre of mass";
  EXPECT_TRUE(body->getRotation().equals(zor::Quat(1.3, Vec3(0, 0, 1)), 1e-6));
  Vec3 const expected = centre - zor::Quat(1.3, Vec3(0, 0, 1)).rotate(Vec3(2, 2, 0) * share);
  EXPECT_TRUE(body->getPosition().equals(expected, 1e-6));
  EXPECT_TRUE(body->getVelocityAt(body->getPosition()).equals(Vec3(0, 0, 1).cross(expected - centre), 1e-6));
}

TEST_F(Bodies, TorqueFreeSpinKeepsAngularMomentumAndEnergy) {
  simulation->setUniformGravity(Vec3());
  simulation->setTimeStep(0.001);
  auto const body = addBox(Vec3(0.1, 0.3, 0.6), Vec3());
  body->setAngularVelocity(Vec3(1, 2, 0.5));
  auto const momentum = [&] {
    zor::Matrix3x3 const r = body->getTransform().getLinear();
    return (body->getAngularVelocity() * r.transpose()) * body->getMassProperties()->getInertiaTensor() * r;
  };
  Vec3 const before = momentum();
  double const energy = body->getKineticEnergy();
  run(2.0);
  EXPECT_LT(momentum().distance(before), 0.02 * before.length());
  EXPECT_NEAR(body->getKineticEnergy(), energy, 0.02 * energy);
}

TEST_F(Bodies, CollisionKeepsMomentum) {
  simulation->setUniformGravity(Vec3());
  auto const a = addSphere(0.5, Vec3(-2, 0.2, 0));
  auto const b = addSphere(0.3, Vec3(0, 0, 0));
  a->setVelocity(Vec3(4, 0, 0));
  double const ma = a->getMassProperties()->getMass(), mb = b->getMassProperties()->getMass();
  Vec3 const before = a->getVelocity() * ma;
  run(2.0);
  EXPECT_GT(b->getVelocity().x(), 1.0) << "they have met";
  EXPECT_TRUE((a->getVelocity() * ma + b->getVelocity() * mb).equals(before, 1e-6 * before.length()));
}

TEST_F(Bodies, MotionControlDecidesWhatMoves) {
  auto const body = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 10));
  body->setMotionControl(zor::RigidBody::STATIC);
  body->setVelocity(Vec3(1, 0, 0));
  run(0.5);
  EXPECT_EQ(body->getPosition(), Vec3(0, 0, 10));
  body->setMotionControl(zor::RigidBody::KINEMATICS);
  body->setVelocity(Vec3(1, 0, 0));
  body->addForce(Vec3(1e6, 0, 0));
  run(1.0);
  EXPECT_TRUE(body->getPosition().equals(Vec3(1, 0, 10), 1e-9)) << body->getPosition();
  body->setMotionControl(zor::RigidBody::DYNAMICS);
  run(0.5);
  EXPECT_LT(body->getPosition().z(), 9.0);
}

TEST_F(Bodies, KinematicConveyorCarriesWhatLiesOnIt) {
  auto const belt = addBox(Vec3(20, 1, 0.5), Vec3());
  belt->setMotionControl(zor::RigidBody::KINEMATICS);
  auto const load = addBox(Vec3(0.2, 0.2, 0.2), Vec3(0, 0, 0.7));
  belt->setVelocity(Vec3(1, 0, 0));
  run(3.0);
  EXPECT_NEAR(load->getVelocity().x(), 1.0, 0.02);
  EXPECT_NEAR(load->getPosition().z(), 0.7, 0.01);
}

TEST_F(Bodies, DampingSlowsByItsRate) {
  simulation->setUniformGravity(Vec3());
  auto const body = addSphere(0.5, Vec3());
  body->setLinearVelocityDamping(0.7);
  body->setVelocity(Vec3(10, 0, 0));
  run(2.0);
  EXPECT_NEAR(body->getVelocity().x(), 10 * std::exp(-1.4), 1e-6);
}

TEST_F(Bodies, RestingBodySleepsAndWakes) {
  addGround();
  simulation->setEnableAutoSleep(true);
  auto const lower = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  auto const upper = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 1.5));
  run(5.0);
  ASSERT_TRUE(lower->isSleeping() && upper->isSleeping());
  EXPECT_EQ(simulation->getStatistics().sleepingBodies, 2u);
  simulation->remove(lower.get());
  run(0.5);
  EXPECT_LT(upper->getPosition().z(), 1.0) << "what rested on it falls";
  simulation->setEnableAutoSleep(false);
  run(5.0);
  EXPECT_FALSE(upper->isSleeping());
}

TEST_F(Bodies, DisabledBodyNeitherMovesNorCollides) {
  auto const shelf = addBox(Vec3(1, 1, 0.1), Vec3());
  shelf->setMotionControl(zor::RigidBody::STATIC);
  auto const ball = addSphere(0.2, Vec3(0, 0, 0.3));
  shelf->setEnable(false);
  run(1.0);
  EXPECT_LT(ball->getPosition().z(), -1.0);
  Vec3 const place = ball->getPosition();
  ball->setEnable(false);
  run(0.5);
  EXPECT_EQ(ball->getPosition(), place);
  ball->setEnable(true);
  run(0.5);
  EXPECT_LT(ball->getPosition().z(), place.z());
}

TEST_F(Bodies, ContinuousCollisionStopsAtThinWall) {
  simulation->setUniformGravity(Vec3());
  auto const wall = addBox(Vec3(0.01, 5, 5), Vec3(10, 0, 0));
  wall->setMotionControl(zor::RigidBody::STATIC);
  auto const bullet = addSphere(0.05, Vec3());
  bullet->setEnableContinuousCollision(true);
  bullet->setVelocity(Vec3(300, 0, 0));
  run(0.5);
  EXPECT_LT(bullet->getPosition().x(), 10.0);
}

TEST_F(Bodies, ObserverFrameFollowsItsBody) {
  simulation->setUniformGravity(Vec3());
  auto const body = addBox(Vec3(0.5, 0.5, 0.5), Vec3(1, 0, 0));
  zor::ref_ptr<zor::ObserverFrame> const frame =
      new zor::ObserverFrame(body.get(), zor::AffineMatrix4x4::translate(Vec3(2, 0, 0)), "tip");
  EXPECT_TRUE(simulation->add(frame.get()));
  EXPECT_EQ(simulation->getObserverFrame("tip"), frame.get());
  body->setAngularVelocity(Vec3(0, 0, zor::PI / 2));
  run(1.0);
  EXPECT_TRUE(frame->getPosition().equals(Vec3(1, 2, 0), 1e-6)) << frame->getPosition();
  EXPECT_TRUE(frame->getVelocity().equals(Vec3(-zor::PI, 0, 0), 1e-6)) << frame->getVelocity();
  frame->detach();
  EXPECT_TRUE(frame->getPosition().equals(Vec3(1, 2, 0), 1e-6));
  EXPECT_EQ(frame->getRigidBody(), nullptr);
}

TEST_F(Bodies, MotionBeyondNumbersLeavesTheOthersAlone) {
  auto const wild = addSphere(0.5, Vec3(0, 0, 5));
  auto const calm = addSphere(0.5, Vec3(10, 0, 5));
  wild->setVelocity(Vec3(1e308, 1e308, 0));
  run(0.2);
  EXPECT_TRUE(wild->getPosition().isFinite());
  EXPECT_LT(calm->getPosition().z(), 5.0);
}

TEST_F(Bodies, WrongValuesAreRefused) {
  constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
  auto const body = makeBody(new zorCollide::Sphere(1));
  zor::MassProperties* const properties = body->getMassProperties();
  EXPECT_THROW(body->setPosition(Vec3(NOT_A_NUMBER, 0, 0)), std::invalid_argument);
  EXPECT_THROW(body->setVelocity(Vec3(INFINITY, 0, 0)), std::invalid_argument);
  EXPECT_THROW(body->setRotation(zor::Quat(0, 0, 0, 0)), std::invalid_argument);
  EXPECT_THROW(body->setTransform(zor::AffineMatrix4x4::scale(Vec3(2, 1, 1))), std::invalid_argument);
  EXPECT_THROW(body->addForce(Vec3(0, NOT_A_NUMBER, 0)), std::invalid_argument);
  EXPECT_THROW(body->setLinearVelocityDamping(-1), std::invalid_argument);
  EXPECT_THROW(body->setMotionControl(static_cast<zor::RigidBody::MotionControl>(7)), std::invalid_argument);
  EXPECT_THROW(properties->setMass(0), std::invalid_argument);
  EXPECT_THROW(properties->setInertiaTensor(Vec3(1, -1, 1)), std::invalid_argument);
  EXPECT_THROW(properties->setInertiaTensor(zor::Matrix3x3(Vec3(1, 2, 0), Vec3(2, 1, 0), Vec3(0, 0, 1))),
               std::invalid_argument);
  EXPECT_THROW(body->add(nullptr), std::invalid_argument);
  EXPECT_THROW(new zor::RigidBody(static_cast<zorCollide::Geometry*>(nullptr), "none"),
               std::invalid_argument);

  zor::ref_ptr<zorCollide::Geometry> const plane =
      new zorCollide::Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3()));
  EXPECT_THROW(body->add(plane.get()), std::invalid_argument) << "a plane cannot move";
  EXPECT_EQ(body->getGeometries().size(), 1u);
  EXPECT_EQ(plane->getRigidBody(), nullptr);
  EXPECT_FALSE(body->add(body->getGeometries()[0].get())) << "twice";
  EXPECT_EQ(body->getPosition(), Vec3());
}

TEST_F(Bodies, GeometriesMayComeAndGoWhileSimulating) {
  addGround();
  auto const body = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  run(0.5);
  zor::ref_ptr<zorCollide::Geometry> const leg = new zorCollide::Geometry(new zorCollide::Capsule(0.2, 1.0));
  EXPECT_TRUE(
      body->add(leg.get(), zor::AffineMatrix4x4(zor::Quat(zor::PI / 2, Vec3(1, 0, 0)), Vec3(0, 0, -0.5))));
  EXPECT_TRUE(body->getPosition().equals(Vec3(0, 0, 0.5), 1e-2));
  EXPECT_EQ(simulation->getGeometries().size(), 3u);
  run(1.0);
  EXPECT_GT(body->getPosition().z(), 0.7) << "the leg has lifted it";
  EXPECT_TRUE(body->remove(leg.get()));
  EXPECT_FALSE(body->remove(leg.get()));
  EXPECT_EQ(simulation->getGeometries().size(), 2u);
  run(2.0);
  EXPECT_NEAR(body->getPosition().z(), 0.5, 0.02);
}

} // namespace
