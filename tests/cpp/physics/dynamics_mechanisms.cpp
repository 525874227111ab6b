#include <cmath>

#include <zor/BallJoint.h>
#include <zor/ContactMaterial.h>
#include <zor/GearJoint.h>
#include <zor/Hinge.h>
#include <zor/UniversalJoint.h>
#include <zor/WheelJoint.h>
#include <zorCollide/Cylinder.h>

#include "PhysicsFixture.h"

using zor::Vec3;

namespace {

constexpr double G = 9.81;

class Mechanisms : public PhysicsFixture {
protected:
  template <class T>
  zor::ref_ptr<T> join(T* joint) {
    EXPECT_TRUE(simulation->add(joint));
    return joint;
  }
};

// A driven shaft turns one that leans by an angle: tan(out) = tan(in) / cos(lean), or cos(lean) times, by the
// phase.
TEST_F(Mechanisms, UniversalJointTurnsALeaningShaft) {
  simulation->setUniformGravity(Vec3());
  simulation->setTimeStep(1.0 / 480);
  double const lean = 0.6;
  Vec3 const direction(std::cos(lean), 0, std::sin(lean));
  auto const input = addBox(Vec3(0.5, 0.05, 0.05), Vec3(-0.5, 0, 0));
  auto const output = makeBody(new zorCollide::Box(Vec3(0.5, 0.05, 0.05)));
  output->setRotation(zor::Quat(Vec3(1, 0, 0), direction));
  output->setPosition(direction * 0.5);
  simulation->add(output.get());
  auto const drive = join(new zor::Hinge(Vec3(-1, 0, 0), Vec3(1, 0, 0), input.get()));
  join(new zor::Hinge(direction, direction, output.get()));
  auto const cross = join(new zor::UniversalJoint(Vec3(), Vec3(-std::sin(lean), 0, std::cos(lean)),
                                                  Vec3(0, 1, 0), output.get(), input.get()));
  drive->getMotor1D()->setEnable(true);
  drive->getMotor1D()->setSpeed(2);
  double slowest = 100, fastest = 0;
  run(0.1);
  while (simulation->getTimeStamp() < 2 * zor::PI) {
    simulation->stepForward();
    double const speed = output->getAngularVelocity().dot(direction);
    slowest = std::min(slowest, speed);
    fastest = std::max(fastest, speed);
    ASSERT_LT(cross->getAttachmentTransform(0).getTranslate().distance(
                  cross->getAttachmentTransform(1).getTranslate()),
              1e-3);
  }
  EXPECT_NEAR(slowest, 2 * std::cos(lean), 0.02);
  EXPECT_NEAR(fastest, 2 / std::cos(lean), 0.02);
  EXPECT_EQ(cross->getNumDOF(), 4u);
}

TEST_F(Mechanisms, UniversalJointDrivesBothAxes) {
  simulation->setUniformGravity(Vec3());
  auto const body = addBox(Vec3(0.2, 0.3, 0.4), Vec3());
  auto const joint = join(new zor::UniversalJoint(Vec3(), Vec3(1, 0, 0), Vec3(0, 0, 1), body.get()));
  using Joint = zor::UniversalJoint;
  joint->getLock1D(Joint::FIRST_AXIS)->setPosition(0.7);
  joint->getLock1D(Joint::SECOND_AXIS)->setPosition(-0.4);
  joint->getLock1D(Joint::FIRST_AXIS)->setEnable(true);
  joint->getLock1D(Joint::SECOND_AXIS)->setEnable(true);
  run(3.0);
  EXPECT_NEAR(joint->getAngle(Joint::FIRST_AXIS), 0.7, 1e-4);
  EXPECT_NEAR(joint->getAngle(Joint::SECOND_AXIS), -0.4, 1e-4);
  Vec3 const turned =
      zor::Quat(-0.4, Vec3(0, 0, 1)).rotate(zor::Quat(0.7, Vec3(1, 0, 0)).rotate(Vec3(0, 1, 0)));
  EXPECT_TRUE(body->getTransform().transformVector(Vec3(0, 1, 0)).equals(turned, 1e-3));
  EXPECT_THROW(joint->getAngle(static_cast<Joint::DOF>(2)), std::out_of_range);
  EXPECT_THROW(new Joint(Vec3(), Vec3(1, 0, 0), Vec3(1, 0, 1), body.get()), std::invalid_argument);
}

// One wheel under a chassis that can only move up and down and along: sag, steering, drive and braking.
TEST_F(Mechanisms, WheelSpringsSteersAndDrives) {
  addGround();
  simulation->setTimeStep(1.0 / 240);
  auto const chassis = addBox(Vec3(0.5, 0.3, 0.1), Vec3(0, 0, 0.8));
  chassis->getMassProperties()->setMass(100);
  zor::RigidBodyRefVector wheels;
  zor::Vector<zor::ref_ptr<zor::WheelJoint>> joints;
  for (int i = 0; i < 4; ++i) {
    Vec3 const centre(i < 2 ? 0.6 : -0.6, i % 2 ? 0.5 : -0.5, 0.3);
    auto const wheel = makeBody(new zorCollide::Cylinder(0.3, 0.15), centre);
    wheel->getMassProperties()->setMass(8);
    simulation->add(wheel.get());
    wheels.push_back(wheel.get());
    joints.push_back(
        join(new zor::WheelJoint(centre, Vec3(0, 1, 0), Vec3(0, 0, 1), wheel.get(), chassis.get())));
    joints.back()->setSuspension(5000, 600, zor::RangeReal(-0.1, 0.1));
  }
  run(3.0);
  double const sag = 100 * G / 4 / 5000;
  EXPECT_NEAR(joints[0]->getAngle(zor::WheelJoint::SUSPENSION), sag, 0.05 * sag);
  EXPECT_NEAR(joints[0]->getLock1D(zor::WheelJoint::SUSPENSION)->getCurrentForce(), -100 * G / 4, 5);
  EXPECT_NEAR(chassis->getPosition().x(), 0, 0.01);

  for (int i = 2; i < 4; ++i) {
    zor::Motor1D* const motor = joints[static_cast<size_t>(i)]->getMotor1D(zor::WheelJoint::SPIN);
    motor->setEnable(true);
    motor->setSpeed(10);
    motor->setForceRange(zor::RangeReal(40));
  }
  run(4.0);
  EXPECT_NEAR(chassis->getVelocity().x(), 10 * 0.3, 0.1) << "rolls at the speed of its wheels";
  EXPECT_NEAR(chassis->getPosition().y(), 0, 0.2);
  for (int i = 0; i < 2; ++i)
    joints[static_cast<size_t>(i)]->setSteeringAngle(0.3);
  run(1.0);
  EXPECT_GT(chassis->getAngularVelocity().z(), 0.3) << "turns left: v tan(a) / wheelbase is 0.77";
  EXPECT_NEAR(joints[0]->getAngle(zor::WheelJoint::STEERING), 0.3, 0.02);
  EXPECT_GT(chassis->getTransform().transformVector(Vec3(0, 0, 1)).z(), 0.98) << "and stays on its wheels";
}

TEST_F(Mechanisms, GearsKeepTheirRatio) {
  simulation->setUniformGravity(Vec3());
  auto const small = makeBody(new zorCollide::Cylinder(0.1, 0.05));
  auto const large = makeBody(new zorCollide::Cylinder(0.3, 0.05), Vec3(1, 0, 0));
  simulation->add(small.get());
  simulation->add(large.get());
  auto const drive = join(new zor::Hinge(Vec3(), Vec3(0, 1, 0), small.get()));
  auto const driven = join(new zor::Hinge(Vec3(1, 0, 0), Vec3(0, 1, 0), large.get()));
  auto const gear =
      join(new zor::GearJoint(small.get(), Vec3(0, 1, 0), large.get(), Vec3(0, 1, 0), -1.0 / 3));
  drive->getMotor1D()->setEnable(true);
  drive->getMotor1D()->setSpeed(6);
  driven->getMotor1D()->setEnable(true); // a load: 2 N m against the motion
  driven->getMotor1D()->setForceRange(zor::RangeReal(-2, 2));
  run(10.0);
  EXPECT_NEAR(driven->getSpeed(), -2, 1e-6);
  EXPECT_NEAR(driven->getAngle(), -drive->getAngle() / 3, 1e-3) << "no tooth is lost";
  EXPECT_NEAR(gear->getCurrentForce(0), -2, 1e-3);
  EXPECT_NEAR(drive->getMotor1D()->getCurrentForce(), 2.0 / 3, 1e-3);
  EXPECT_THROW(gear->setRatio(0), std::invalid_argument);
  EXPECT_THROW(new zor::GearJoint(small.get(), Vec3(0, 1, 0), nullptr, Vec3(0, 1, 0), 1),
               std::invalid_argument);
}

TEST_F(Mechanisms, ForceStatisticsFollowOnlyWhenAsked) {
  simulation->setUniformGravity(Vec3());
  auto const bar = addBox(Vec3(0.5, 0.1, 0.1), Vec3());
  auto const hinge = join(new zor::Hinge(Vec3(), Vec3(0, 0, 1), bar.get()));
  double const inertia = bar->getMassProperties()->getPrincipalInertiae().z();
  zor::Motor1D* const motor = hinge->getMotor1D();
  motor->setEnable(true);
  motor->setSpeed(100);
  motor->setForceRange(zor::RangeReal(-1, 2));
  run(0.5);
  EXPECT_EQ(hinge->getForceStatistics().getCount(), 0u);
  EXPECT_EQ(motor->getForceStatistics().getCount(), 0u);
  hinge->setEnableForceStatistics(true);
  run(0.5);
  motor->setEnable(false);
  run(0.5);
  zor::ForceStatistics const drive = motor->getForceStatistics();
  EXPECT_EQ(drive.getCount(), 60u);
  EXPECT_NEAR(drive.getMaximum(), 2, 1e-9);
  EXPECT_NEAR(drive.getMinimum(), 0, 1e-9);
  EXPECT_NEAR(drive.getMean(), 1, 1e-6);
  EXPECT_NEAR(drive.getStandardDeviation(), 1, 1e-6);
  EXPECT_NEAR(hinge->getTorqueStatistics().getMaximum(), 2, 1e-6);
  EXPECT_GT(bar->getAngularVelocity().z() * inertia, 1.9) << "2 N m for a second";
}

TEST_F(Mechanisms, KinematicBodyMovesToItsTarget) {
  auto const lift = addBox(Vec3(1, 1, 0.1), Vec3());
  auto const load = addBox(Vec3(0.2, 0.2, 0.2), Vec3(0.5, 0, 0.3));
  zor::AffineMatrix4x4 const target(zor::Quat(1.0, Vec3(0, 0, 1)), Vec3(0.5, 0, 2));
  EXPECT_THROW(lift->moveTo(target, 1), std::invalid_argument) << "moves by forces";
  lift->setMotionControl(zor::RigidBody::KINEMATICS);
  simulation->setNumSubSteps(3);
  run(0.2);
  lift->moveTo(target, 2.0);
  run(1.0);
  EXPECT_TRUE(lift->getVelocity().equals(Vec3(0.25, 0, 1), 1e-9)) << lift->getVelocity();
  EXPECT_NEAR(lift->getAngularVelocity().z(), 0.5, 1e-9);
  EXPECT_NEAR(lift->getMoveTimeLeft(), 1.0, 1e-9);
  EXPECT_NEAR(load->getVelocity().z(), 1, 0.05) << "carries what lies on it";
  run(1.0);
  EXPECT_TRUE(lift->getTransform().equals(target, 1e-12));
  EXPECT_EQ(lift->getVelocity(), Vec3());
  EXPECT_EQ(lift->getMoveTimeLeft(), 0);
  run(1.0);
  EXPECT_TRUE(lift->getTransform().equals(target, 1e-12));
  EXPECT_NEAR(load->getPosition().z(), 2.3, 0.02);

  lift->moveTo(zor::AffineMatrix4x4(zor::Quat(3.0, Vec3(1, 0, 0))), 0); // within one step, however far
  simulation->stepForward();
  EXPECT_TRUE(lift->getTransform().equals(zor::AffineMatrix4x4(zor::Quat(3.0, Vec3(1, 0, 0))), 1e-9));
  lift->moveTo(target, 5);
  lift->setVelocity(Vec3(0, 1, 0));
  EXPECT_EQ(lift->getMoveTimeLeft(), 0) << "given up";
  EXPECT_THROW(lift->moveTo(target, -1), std::invalid_argument);
  EXPECT_THROW(lift->moveTo(zor::AffineMatrix4x4::scale(Vec3(2, 2, 2)), 1), std::invalid_argument);
}

TEST_F(Mechanisms, LocalAxesAreThoseOfTheBody) {
  simulation->setUniformGravity(Vec3());
  auto const body = addBox(Vec3(0.2, 0.2, 0.2), Vec3(1, 2, 3));
  double const mass = body->getMassProperties()->getMass();
  body->setRotation(zor::Quat(zor::PI / 2, Vec3(0, 0, 1)));
  body->setLocalVelocity(Vec3(1, 0, 0));
  EXPECT_TRUE(body->getVelocity().equals(Vec3(0, 1, 0), 1e-12));
  EXPECT_TRUE(body->getLocalVelocity().equals(Vec3(1, 0, 0), 1e-12));
  body->setLocalAngularVelocity(Vec3(0, 2, 0));
  EXPECT_TRUE(body->getAngularVelocity().equals(Vec3(-2, 0, 0), 1e-12));
  EXPECT_TRUE(body->getLocalAngularVelocity().equals(Vec3(0, 2, 0), 1e-12));
  EXPECT_TRUE(body->getMomentum().equals(Vec3(0, mass, 0), 1e-9));
  body->addLocalForce(Vec3(5, 0, 0));
  body->addLocalTorque(Vec3(0, 0, 3));
  EXPECT_TRUE(body->getForce().equals(Vec3(0, 5, 0), 1e-12));
  EXPECT_TRUE(body->getTorque().equals(Vec3(0, 0, 3), 1e-12));
  body->addLocalForceAtLocalPosition(Vec3(0, 0, 4), Vec3(0.5, 0, 0)); // x of the body is y of the world
  EXPECT_TRUE(body->getTorque().equals(Vec3(2, 0, 3), 1e-12)) << body->getTorque();
}

// A solver that may stop early does less for a body at rest than for a crash.
TEST_F(Mechanisms, SolverTellsHowFarItCame) {
  addGround();
  for (int i = 0; i < 6; ++i)
    addBox(Vec3(0.2, 0.2, 0.2), Vec3(0, 0, 0.2 + 0.4 * i));
  run(2.0);
  EXPECT_EQ(simulation->getStatistics().solverIterations, 30u);
  double const residual = simulation->getStatistics().solverResidual;
  EXPECT_GT(residual, 0);
  EXPECT_LT(residual, 1e-2);
  simulation->setSolverTolerance(1e-2);
  EXPECT_NEAR(simulation->getSolverTolerance(), 1e-2, 1e-15);
  run(1.0);
  EXPECT_LT(simulation->getStatistics().solverIterations, 30u);
  EXPECT_THROW(simulation->setSolverTolerance(-1), std::invalid_argument);
  EXPECT_THROW(simulation->setSolverType(static_cast<zorSDK::Simulation::SolverType>(7)),
               std::invalid_argument);
}

} // namespace
