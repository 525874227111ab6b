// How a robot moves: gravity at its joints, limits, damping, mimicking, planar joints, neighbours.

#include "RobotFixture.h"

#include <cmath>

#include <zorCollide/Space.h>

using zor::ref_ptr;
using zor::Vec3;
using zorTest::jointOf;
using zorTest::linkOf;

namespace {

constexpr double GRAVITY = 9.80665;

class UrdfMotion : public zorTest::RobotFixture {
protected:
  UrdfMotion() { simulation->setUniformGravity(Vec3(0, 0, -GRAVITY)); }

  ref_ptr<zorSDK::Assembly> add(std::string const& inside) {
    reader.setFixedBase(true);
    auto robot = read(inside);
    simulation->add(robot.get());
    return robot;
  }
};

std::string const aboutY = "<origin xyz='0 0 2'/><axis xyz='0 1 0'/>";

} // namespace

TEST_F(UrdfMotion, LocksCarryTheTorqueOfGravity) {
  // Two links of 2 kg with centres 0.5 m out; the second joint sits 1 m out and is bent by 0.6 rad.
  double const q1 = -0.3, q2 = 0.6;
  reader.setJointPosition("j", q1);
  reader.setJointPosition("k", q2);
  auto const robot = add(linkOf("base") + linkOf("a", "0.5 0 0") + linkOf("b", "0.5 0 0") +
                         jointOf("j", "continuous", "base", "a", aboutY) +
                         jointOf("k", "continuous", "a", "b", "<origin xyz='1 0 0'/><axis xyz='0 1 0'/>"));
  for (char const* name : {"j", "k"})
    joint(*robot, name).getLock1D()->setEnable(true);
  run(2);
  double const second = 2 * GRAVITY * 0.5 * std::cos(q1 + q2);
  double const first = 2 * GRAVITY * 0.5 * std::cos(q1) + 2 * GRAVITY * std::cos(q1) + second;
  // Gravity turns x towards -z, which is positive about y; the locks hold against it.
  EXPECT_NEAR(joint(*robot, "k").getCurrentForce(), -second, 0.002 * second);
  EXPECT_NEAR(joint(*robot, "j").getCurrentForce(), -first, 0.002 * first);
  EXPECT_NEAR(joint(*robot, "j").getAngle(), q1, 1e-3);
}

TEST_F(UrdfMotion, LimitsHoldUnderLoad) {
  auto const robot =
      add(linkOf("base") + linkOf("a", "0.5 0 0") + linkOf("s") +
          jointOf("j", "revolute", "base", "a",
                  aboutY + "<limit lower='-1' upper='0.4' effort='100' velocity='9'/>") +
          jointOf("p", "prismatic", "base", "s",
                  "<axis xyz='0 0 1'/><limit lower='-0.25' upper='1' effort='100' velocity='9'/>"));
  robot->getRigidBody("a")->addForceAtLocalPosition(Vec3(0, 0, -500), Vec3(1, 0, 0));
  run(3);
  EXPECT_NEAR(joint(*robot, "j").getAngle(), 0.4, 2e-3);
  EXPECT_NEAR(joint(*robot, "p").getPosition(), -0.25, 2e-3);
  EXPECT_NEAR(robot->getRigidBody("base")->getPosition().length(), 0, 1e-12);
}

TEST_F(UrdfMotion, DampingAndFrictionAreThoseOfTheFile) {
  std::string const down = "<axis xyz='0 0 -1'/><limit lower='-100' upper='100' effort='0' velocity='0'/>";
  auto const robot = add(linkOf("base") + linkOf("a") + linkOf("b") + linkOf("c") +
                         jointOf("damped", "prismatic", "base", "a", down + "<dynamics damping='40'/>") +
                         jointOf("sticks", "prismatic", "base", "b", down + "<dynamics friction='20'/>") +
                         jointOf("slips", "prismatic", "base", "c", down + "<dynamics friction='10'/>"));
  run(1);
  double const weight = 2 * GRAVITY;
  EXPECT_NEAR(joint(*robot, "damped").getSpeed(), weight / 40, 1e-3); // its final speed
  EXPECT_NEAR(joint(*robot, "sticks").getPosition(), 0, 1e-3);
  EXPECT_NEAR(joint(*robot, "slips").getSpeed(), (weight - 10) / 2, 0.01);
}

TEST_F(UrdfMotion, AMimickingJointFollows) {
  auto const robot =
      add(linkOf("base") + linkOf("a") + linkOf("b") + jointOf("j", "continuous", "base", "a", aboutY) +
          jointOf("k", "continuous", "base", "b",
                  "<origin xyz='0 1 0'/><axis xyz='0 1 0'/><mimic joint='j' multiplier='-2' offset='0.5'/>"));
  EXPECT_NEAR(joint(*robot, "k").getAngle(), 0.5, 1e-9);
  joint(*robot, "j").getLock1D()->setEnable(true);
  joint(*robot, "j").getLock1D()->setPosition(0.8);
  run(2);
  EXPECT_NEAR(joint(*robot, "j").getAngle(), 0.8, 1e-3);
  EXPECT_NEAR(joint(*robot, "k").getAngle(), 0.5 - 2 * 0.8, 1e-2);
}

TEST_F(UrdfMotion, APlanarJointLeavesThreeFreedoms) {
  auto const robot = add(linkOf("base") + linkOf("puck") + linkOf("kite") +
                         jointOf("plane", "planar", "base", "puck", "<axis xyz='0 0 1'/>") +
                         jointOf("free", "floating", "base", "kite", "<origin xyz='0 9 0'/>"));
  zor::RigidBody& puck = *robot->getRigidBody("puck");
  puck.setVelocity(Vec3(1, 2, 0));
  puck.setAngularVelocity(Vec3(0, 0, 3));
  run(1);
  EXPECT_NEAR(puck.getPosition().z(), 0, 3e-3); // gravity hardly moves it
  EXPECT_NEAR(puck.getPosition().x(), 1, 0.05);
  EXPECT_NEAR(puck.getPosition().y(), 2, 0.1);
  EXPECT_NEAR(puck.getAngularVelocity().z(), 3, 0.1);
  EXPECT_LT(robot->getRigidBody("kite")->getPosition().z(), -4);
}

TEST_F(UrdfMotion, OnlyNeighboursPassThroughOneAnother) {
  std::string const box = "<collision><geometry><box size='1 1 1'/></geometry></collision></link>";
  auto const boxed = [&](std::string const& name) {
    std::string text = linkOf(name);
    return text.replace(text.find("</link>"), 7, box);
  };
  std::string const chain = boxed("a") + boxed("b") + boxed("c") +
                            jointOf("j", "continuous", "a", "b", aboutY) +
                            jointOf("k", "continuous", "b", "c", "<origin xyz='0 0 -2'/><axis xyz='0 1 0'/>");
  // All three overlap or touch pairwise only as (a, c): b stands two metres above both.
  for (bool const meet : {true, false}) {
    reader.setSelfCollisions(meet);
    auto const robot = add(chain);
    simulation->stepForward();
    EXPECT_EQ(!simulation->getSpace()->getGeometryContacts().empty(), meet);
    simulation->remove(robot.get());
  }
}
