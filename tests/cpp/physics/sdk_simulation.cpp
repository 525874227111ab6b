#include <cmath>
#include <limits>
#include <vector>

#include <zor/Hinge.h>

#include "PhysicsFixture.h"

using zor::Vec3;

namespace {

class Simulations : public PhysicsFixture {};

TEST_F(Simulations, TimeIsCountedInSteps) {
  EXPECT_DOUBLE_EQ(simulation->getTimeStep(), 1.0 / 60.0);
  EXPECT_EQ(simulation->getUniformGravity(), Vec3(0, 0, -9.81));
  simulation->setTimeStep(0.1);
  EXPECT_EQ(simulation->stepTo(0.95), 9u);
  EXPECT_EQ(simulation->stepTo(1.0), 1u);
  EXPECT_EQ(simulation->stepTo(0.5), 0u) << "time does not go back";
  EXPECT_DOUBLE_EQ(simulation->getTimeStamp(), 1.0);
  simulation->setTimeStep(0.01);
  simulation->setTimeStamp(5.0);
  for (int i = 0; i < 100000; ++i)
    simulation->stepForward();
  EXPECT_NEAR(simulation->getTimeStamp(), 1005.0, 1e-9) << "without rounding adding up";
}

TEST_F(Simulations, ObjectsEnterOnceAndAreFoundByName) {
  auto const box = addBox(Vec3(1, 1, 1), Vec3(), "box");
  EXPECT_FALSE(simulation->add(box.get()));
  EXPECT_EQ(simulation->getRigidBody("box"), box.get());
  EXPECT_EQ(simulation->getRigidBody("other"), nullptr);
  EXPECT_EQ(box->getSimulation(), simulation.get());
  EXPECT_EQ(simulation->getGeometries().size(), 1u);
  EXPECT_FALSE(simulation->add(box->getGeometries()[0].get())) << "a body's geometry comes with the body";

  zor::ref_ptr<zorSDK::Simulation> const other = new zorSDK::Simulation;
  EXPECT_FALSE(other->add(box.get())) << "one simulation at a time";
  EXPECT_FALSE(other->remove(box.get()));
  zor::ref_ptr<zor::RigidBody> const foreign = new zor::RigidBody("foreign");
  other->add(foreign.get());
  zor::ref_ptr<zor::Hinge> const across = new zor::Hinge(Vec3(), Vec3(0, 0, 1), box.get(), foreign.get());
  EXPECT_FALSE(simulation->add(across.get()));

  zor::ref_ptr<zor::Hinge> const hinge = new zor::Hinge(Vec3(), Vec3(0, 0, 1), box.get());
  hinge->setName("hinge");
  EXPECT_TRUE(simulation->add(hinge.get()));
  EXPECT_EQ(simulation->getConstraint("hinge"), hinge.get());
  EXPECT_EQ(simulation->getConstraint1DOF("hinge"), hinge.get());

  zor::ref_ptr<zor::Material> const wood = new zor::Material("wood");
  zor::ref_ptr<zor::ContactMaterial> const pair = new zor::ContactMaterial(wood.get(), wood.get());
  EXPECT_TRUE(simulation->add(wood.get()));
  EXPECT_TRUE(simulation->add(pair.get()));
  EXPECT_FALSE(simulation->add(pair.get()));
  EXPECT_EQ(simulation->getMaterial("wood"), wood.get());
  EXPECT_EQ(simulation->getContactMaterial(wood.get(), wood.get()), pair.get());
  EXPECT_TRUE(simulation->remove(pair.get()));
  EXPECT_EQ(simulation->getContactMaterial(wood.get(), wood.get()), nullptr);

  EXPECT_TRUE(simulation->remove(box.get()));
  EXPECT_FALSE(simulation->remove(box.get()));
  EXPECT_EQ(simulation->getGeometries().size(), 0u);
  EXPECT_TRUE(other->add(box.get()));
}

TEST_F(Simulations, CleanupLeavesAnEmptyWorldAtTimeZero) {
  addGround();
  auto const box = addBox(Vec3(1, 1, 1), Vec3(0, 0, 1));
  zor::ref_ptr<zor::Hinge> const hinge = new zor::Hinge(Vec3(), Vec3(0, 0, 1), box.get());
  simulation->add(hinge.get());
  zor::ref_ptr<zorSDK::Assembly> const assembly = new zorSDK::Assembly("group");
  assembly->add(makeBody(new zorCollide::Sphere(1), Vec3(5, 0, 5)).get());
  simulation->add(assembly.get());
  simulation->setUniformGravity(Vec3(0, 0, -1));
  run(0.5);
  simulation->cleanup();
  EXPECT_EQ(simulation->getTimeStamp(), 0);
  EXPECT_EQ(simulation->getStatistics().steps, 0u);
  EXPECT_TRUE(simulation->getRigidBodies().empty() && simulation->getGeometries().empty() &&
              simulation->getConstraints().empty() && simulation->getAssemblies().empty());
  EXPECT_EQ(box->getSimulation(), nullptr);
  EXPECT_EQ(assembly->getSimulation(), nullptr);
  EXPECT_EQ(simulation->getUniformGravity(), Vec3(0, 0, -1)) << "settings stay";
  EXPECT_TRUE(simulation->add(box.get()));
  run(0.5);
  EXPECT_LT(box->getPosition().z(), 1.0);
}

TEST_F(Simulations, ContentsOutliveTheSimulation) {
  auto const box = addBox(Vec3(1, 1, 1), Vec3(0, 0, 1), "box");
  zor::ref_ptr<zorCollide::Space> const space = simulation->getSpace();
  simulation = nullptr;
  EXPECT_EQ(box->getSimulation(), nullptr);
  EXPECT_EQ(space->getNumGeometries(), 0u);
  box->setVelocity(Vec3(1, 0, 0));
  simulation = new zorSDK::Simulation;
  EXPECT_TRUE(simulation->add(box.get()));
}

TEST_F(Simulations, SameSceneMovesTheSame) {
  auto const play = [] {
    zor::ref_ptr<zorSDK::Simulation> const world = new zorSDK::Simulation;
    world->add(new zorCollide::Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3())));
    for (int i = 0; i < 20; ++i)
      world->add(makeBody(new zorCollide::Box(Vec3(0.2, 0.3, 0.1)), Vec3(0.05 * i, 0, 0.3 + 0.5 * i)).get());
    world->stepTo(2.0);
    Vec3 sum;
    for (auto const& body : world->getRigidBodies())
      sum += body->getPosition();
    return sum;
  };
  EXPECT_EQ(play(), play());
}

TEST_F(Simulations, StatesTellEveryBodyToTheBit) {
  simulation->setEnableAutoSleep(true);
  addGround();
  auto const rests = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  auto const flies = addSphere(0.2, Vec3(3, 4, 50));
  flies->setRotation(zor::Quat(0.3, Vec3(0, 0, 1)));
  flies->setVelocity(Vec3(1, 2, 3));
  flies->setAngularVelocity(Vec3(0.5, 0.25, 0.125));
  run(3.0);
  zor::RealVector const state = simulation->getState();
  ASSERT_EQ(state.size(), 1u + 2 * 14);
  EXPECT_EQ(state[0], simulation->getTimeStamp());
  EXPECT_EQ(state[14], 1.0) << "the box sleeps";
  zor::Quat const turn = flies->getRotation();
  std::vector<double> expected;
  for (Vec3 const& v : {flies->getPosition(), Vec3(), flies->getVelocity(), flies->getAngularVelocity()})
    expected.insert(expected.end(), {v.x(), v.y(), v.z()});
  expected.erase(expected.begin() + 3, expected.begin() + 6);
  expected.insert(expected.begin() + 3, {turn.x(), turn.y(), turn.z(), turn.w()});
  expected.push_back(0.0);
  EXPECT_EQ(std::vector<double>(state.begin() + 15, state.end()), expected);

  zor::UInt const hash = simulation->getStateHash();
  EXPECT_EQ(simulation->getStateHash(), hash) << "asking changes nothing";
  double const height = flies->getPosition().z();
  flies->setPosition(Vec3(flies->getPosition().x(), flies->getPosition().y(), std::nextafter(height, 100.0)));
  EXPECT_NE(simulation->getStateHash(), hash) << "the last bit counts";
  simulation->remove(flies.get());
  EXPECT_EQ(simulation->getState().size(), 15u);
  EXPECT_TRUE(rests->isSleeping());
}

TEST_F(Simulations, StatisticsDescribeTheLastStep) {
  addGround();
  addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  run(2.0);
  zorSDK::SimulationStatistics const statistics = simulation->getStatistics();
  EXPECT_EQ(statistics.steps, 120u);
  EXPECT_EQ(statistics.bodies, 1u);
  EXPECT_EQ(statistics.contacts, 1u);
  EXPECT_GE(statistics.contactPoints, 3u);
  EXPECT_GT(statistics.stepTime, 0);
  EXPECT_GE(statistics.stepTime, statistics.collisionTime + statistics.solverTime);
}

TEST_F(Simulations, WrongArgumentsAreRefused) {
  EXPECT_THROW(simulation->add(static_cast<zor::RigidBody*>(nullptr)), std::invalid_argument);
  EXPECT_THROW(simulation->add(static_cast<zorCollide::Geometry*>(nullptr)), std::invalid_argument);
  EXPECT_THROW(simulation->add(static_cast<zor::Constraint*>(nullptr)), std::invalid_argument);
  EXPECT_THROW(simulation->add(static_cast<zorSDK::Assembly*>(nullptr)), std::invalid_argument);
  EXPECT_THROW(simulation->remove(static_cast<zorSDK::EventListener*>(nullptr)), std::invalid_argument);
  EXPECT_THROW(simulation->setTimeStep(0), std::invalid_argument);
  EXPECT_THROW(simulation->setTimeStep(std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
  EXPECT_THROW(simulation->stepTo(INFINITY), std::invalid_argument);
  EXPECT_THROW(simulation->setUniformGravity(Vec3(0, 0, NAN)), std::invalid_argument);
  EXPECT_THROW(simulation->setNumSubSteps(0), std::invalid_argument);
  EXPECT_THROW(simulation->setNumSolverIterations(100000), std::invalid_argument);
}

} // namespace
