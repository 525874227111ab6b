#include <cmath>

#include <zor/BallJoint.h>
#include <zor/CylindricalJoint.h>
#include <zor/DistanceJoint.h>
#include <zor/Hinge.h>
#include <zor/LockJoint.h>
#include <zor/Prismatic.h>

#include "PhysicsFixture.h"

using zor::Vec3;

namespace {

constexpr double G = 9.81;

class Constraints : public PhysicsFixture {
protected:
  // A bar along X whose left end is at the origin.
  zor::ref_ptr<zor::RigidBody> addBar() {
    auto const bar = addBox(Vec3(0.5, 0.05, 0.05), Vec3(0.5, 0, 0), "bar");
    bar->getMassProperties()->setMass(3);
    return bar;
  }

  template <class T>
  zor::ref_ptr<T> join(T* joint) {
    EXPECT_TRUE(simulation->add(joint));
    return joint;
  }
};

// Small swing of a physical pendulum, and of the same one held by a ball joint: T = 2 pi sqrt(I / (m g l)).
TEST_F(Constraints, PendulumHasItsPeriod) {
  simulation->setTimeStep(1.0 / 240.0);
  auto const bar = addBox(Vec3(0.05, 0.05, 0.5), Vec3(0, 0, -0.5));
  zor::MassProperties const& mass = *bar->getMassProperties();
  double const inertia = mass.getPrincipalInertiae().y() + mass.getMass() * 0.25;
  double const period = 2 * zor::PI * std::sqrt(inertia / (mass.getMass() * G * 0.5));
  auto const hinge = join(new zor::Hinge(Vec3(), Vec3(0, 1, 0), bar.get()));
  double const swing = 0.05;
  bar->setRotation(zor::Quat(swing, Vec3(0, 1, 0)));
  bar->setPosition(zor::Quat(swing, Vec3(0, 1, 0)).rotate(Vec3(0, 0, -0.5)));
  EXPECT_NEAR(hinge->getAngle(), swing, 1e-9);

  double last = hinge->getAngle(), first = -1, crossing = -1;
  int periods = 0;
  while (simulation->getTimeStamp() < 12) {
    simulation->stepForward();
    double const angle = hinge->getAngle();
    if (last < 0 && angle >= 0) {
      crossing = simulation->getTimeStamp() - simulation->getTimeStep() * angle / (angle - last);
      periods += first < 0 ? 0 : 1;
      first = first < 0 ? crossing : first;
    }
    last = angle;
  }
  ASSERT_GE(periods, 5);
  EXPECT_NEAR((crossing - first) / periods, period, 0.005 * period);
  EXPECT_LT(hinge->getAttachmentTransform(0).getTranslate().length(), 1e-3) << "the axis stays";
}

TEST_F(Constraints, HingeHoldsItsBodyWithItsWeight) {
  auto const bar = addBar();
  auto const hinge = join(new zor::Hinge(Vec3(), Vec3(0, 1, 0), bar.get()));
  hinge->getLock1D()->setEnable(true);
  run(1.0);
  EXPECT_NEAR(hinge->getAngle(), 0, 1e-3);
  EXPECT_NEAR(hinge->getLock1D()->getCurrentForce(), -3 * G * 0.5, 0.01 * 3 * G)
      << "against the weight's moment";
  Vec3 force, torque;
  ASSERT_TRUE(hinge->getLastForce(0, force, torque));
  EXPECT_NEAR(force.z(), 3 * G, 0.01 * 3 * G);
  EXPECT_LT(torque.length(), 0.01 * 3 * G) << "force at the end and lock balance about the centre of mass";
  EXPECT_FALSE(hinge->getLastForce(1, force, torque)) << "the world is no body";
  EXPECT_THROW(hinge->getLastForce(2, force, torque), std::out_of_range);
}

TEST_F(Constraints, MotorReachesItsSpeedWithinItsForce) {
  simulation->setUniformGravity(Vec3());
  auto const bar = addBar();
  auto const hinge = join(new zor::Hinge(Vec3(0.5, 0, 0), Vec3(0, 0, 1), bar.get()));
  double const inertia = bar->getMassProperties()->getPrincipalInertiae().z();
  zor::Motor1D* const motor = hinge->getMotor1D();
  motor->setEnable(true);
  motor->setSpeed(4);
  motor->setForceRange(zor::RangeReal(-1, 2 * inertia)); // 2 rad/s2 at most: 2 s to get there
  run(1.0);
  EXPECT_NEAR(hinge->getSpeed(), 2.0, 0.02);
  EXPECT_NEAR(motor->getCurrentForce(), 2 * inertia, 1e-6);
  run(2.0);
  EXPECT_NEAR(hinge->getSpeed(), 4.0, 1e-6);
  EXPECT_NEAR(motor->getCurrentForce(), 0, 1e-6);
  EXPECT_NEAR(bar->getAngularVelocity().z(), 4.0, 1e-6);
  EXPECT_NEAR(hinge->getAngle(), 4 + 4, 0.1) << "angles go on after a full turn";
  motor->setEnable(false);
  motor->setSpeed(0);
  run(0.5);
  EXPECT_NEAR(hinge->getSpeed(), 4.0, 1e-6) << "off, it lets go";
}

// The bounds of a motor need not be symmetric: this one can push but not brake.
TEST_F(Constraints, MotorForceRangeIsOneSided) {
  simulation->setUniformGravity(Vec3());
  auto const bar = addBar();
  auto const hinge = join(new zor::Hinge(Vec3(0.5, 0, 0), Vec3(0, 0, 1), bar.get()));
  bar->setAngularVelocity(Vec3(0, 0, 3));
  hinge->getMotor1D()->setEnable(true);
  hinge->getMotor1D()->setForceRange(zor::RangeReal(0, 100));
  hinge->getMotor1D()->setSpeed(1);
  run(1.0);
  EXPECT_NEAR(hinge->getSpeed(), 3.0, 1e-6);
}

TEST_F(Constraints, RangeStopsAtBothEnds) {
  auto const bar = addBar();
  auto const hinge = join(new zor::Hinge(Vec3(), Vec3(0, 1, 0), bar.get()));
  hinge->getRange1D()->setEnable(true);
  hinge->getRange1D()->setRange(-0.4, 0.6); // about +Y the bar falls through positive angles
  run(3.0);
  EXPECT_NEAR(hinge->getAngle(), 0.6, 2e-3);
  EXPECT_NEAR(hinge->getRange1D()->getCurrentForce(), -3 * G * 0.5 * std::cos(0.6), 0.2);
  simulation->setUniformGravity(Vec3(0, 0, G));
  run(3.0);
  EXPECT_NEAR(hinge->getAngle(), -0.4, 2e-3);
  EXPECT_GT(hinge->getRange1D()->getCurrentForce(), 0);
}

TEST_F(Constraints, RangeGivesWayBeyondItsForce) {
  auto const bar = addBar();
  auto const hinge = join(new zor::Hinge(Vec3(), Vec3(0, 1, 0), bar.get()));
  hinge->getRange1D()->setEnable(true);
  hinge->getRange1D()->setRange(-0.1, 0.1);
  hinge->getRange1D()->setForceRange(zor::RangeReal(-1, 1)); // the moment of the weight is 14.7
  run(0.5);
  EXPECT_GT(hinge->getAngle(), 0.5);
}

TEST_F(Constraints, PrismaticSlidesOnlyAlongItsAxis) {
  auto const slider = addBox(Vec3(0.2, 0.3, 0.1), Vec3(1, 2, 3));
  slider->getMassProperties()->setMass(2);
  Vec3 const axis = Vec3(1, 0, -1).normal();
  auto const joint = join(new zor::Prismatic(axis, slider.get()));
  slider->setAngularVelocity(Vec3(3, 2, 1));
  run(1.0);
  double const fallen = 0.5 * G / std::sqrt(2.0) * 1.0 * (1.0 + simulation->getTimeStep());
  EXPECT_NEAR(joint->getPosition(), fallen, 0.01 * fallen);
  EXPECT_NEAR(joint->getSpeed(), G / std::sqrt(2.0), 0.01 * G);
  EXPECT_TRUE((slider->getPosition() - Vec3(1, 2, 3)).equals(axis * joint->getPosition(), 1e-3));
  EXPECT_NEAR(std::abs(slider->getRotation().w()), 1, 1e-5) << "and does not turn";
  joint->getLock1D()->setPosition(2.0);
  joint->getLock1D()->setEnable(true);
  run(3.0);
  EXPECT_NEAR(joint->getPosition(), 2.0, 1e-3);
  EXPECT_NEAR(joint->getCurrentForce(), -2 * G / std::sqrt(2.0), 0.05);
}

TEST_F(Constraints, LockSpringSagsByItsCompliance) {
  auto const weight = addSphere(0.2, Vec3());
  weight->getMassProperties()->setMass(2);
  auto const joint = join(new zor::Prismatic(Vec3(0, 0, 1), weight.get()));
  joint->getLock1D()->setEnable(true);
  joint->getLock1D()->setCompliance(0.01); // 100 N/m
  joint->getLock1D()->setDamping(0.2);
  run(6.0);
  EXPECT_NEAR(joint->getPosition(), -2 * G * 0.01, 1e-3);
}

TEST_F(Constraints, DistanceJointKeepsItsLength) {
  auto const ball = addSphere(0.1, Vec3(2, 0, 0));
  auto const joint = join(new zor::DistanceJoint(ball.get(), Vec3(), Vec3(0, 0, 0)));
  EXPECT_NEAR(joint->getLock1D()->getPosition(), 2.0, 1e-12);
  for (int i = 0; i < 180; ++i) {
    simulation->stepForward();
    ASSERT_NEAR(ball->getPosition().length(), 2.0, 0.01) << i;
  }
  joint->getLock1D()->setEnable(false);
  joint->getRange1D()->setRange(0, 3); // a rope
  joint->getRange1D()->setEnable(true);
  ball->setLinearVelocityDamping(1);
  run(15.0);
  EXPECT_TRUE(ball->getPosition().equals(Vec3(0, 0, -3), 0.05)) << ball->getPosition();
}

TEST_F(Constraints, BallJointChainHangsTogether) {
  zor::RigidBodyRefVector links;
  zor::ConstraintRefVector joints;
  for (int i = 0; i < 10; ++i) {
    links.push_back(addBox(Vec3(0.2, 0.05, 0.05), Vec3(0.25 + 0.5 * i, 0, 0)));
    joints.push_back(join(new zor::BallJoint(Vec3(0.5 * i, 0, 0), links[static_cast<size_t>(i)].get(),
                                             i ? links[static_cast<size_t>(i - 1)].get() : nullptr)));
  }
  simulation->setNumSubSteps(4); // the end of the chain cracks like a whip
  for (int i = 0; i < 300; ++i) {
    simulation->stepForward();
    for (auto const& joint : joints)
      ASSERT_LT(joint->getAttachmentTransform(0).getTranslate().distance(
                    joint->getAttachmentTransform(1).getTranslate()),
                0.03)
          << i;
  }
  EXPECT_LT(links[9]->getPosition().z(), -1.0);
}

TEST_F(Constraints, LockJointKeepsBodiesRigid) {
  auto const carrier = addBox(Vec3(0.5, 0.5, 0.5), Vec3());
  carrier->setMotionControl(zor::RigidBody::STATIC);
  auto const arm = addBox(Vec3(1, 0.1, 0.1), Vec3(1.5, 0, 0));
  arm->getMassProperties()->setMass(10);
  auto const lock = join(new zor::LockJoint(arm.get(), carrier.get()));
  run(2.0);
  EXPECT_TRUE(arm->getPosition().equals(Vec3(1.5, 0, 0), 1e-3)) << arm->getPosition();
  Vec3 force, torque;
  ASSERT_TRUE(lock->getLastForce(1, force, torque));
  EXPECT_NEAR(force.z(), -10 * G, 1) << "the carrier feels the weight";
  lock->setEnable(false);
  run(0.5);
  EXPECT_LT(arm->getPosition().z(), -0.5);
  EXPECT_FALSE(lock->getLastForce(1, force, torque));
}

TEST_F(Constraints, CylindricalJointDrivesBothFreedoms) {
  auto const body = addBox(Vec3(0.2, 0.2, 0.2), Vec3());
  auto const joint = join(new zor::CylindricalJoint(Vec3(), Vec3(0, 0, 1), body.get()));
  using Joint = zor::CylindricalJoint;
  joint->getMotor1D(Joint::ROTATIONAL)->setEnable(true);
  joint->getMotor1D(Joint::ROTATIONAL)->setSpeed(2);
  joint->getLock1D(Joint::TRANSLATIONAL)->setEnable(true);
  joint->getLock1D(Joint::TRANSLATIONAL)->setPosition(0.5);
  run(2.0);
  EXPECT_NEAR(joint->getAngle(Joint::TRANSLATIONAL), 0.5, 1e-3);
  EXPECT_NEAR(joint->getAngle(Joint::ROTATIONAL), 4, 0.05);
  EXPECT_TRUE(body->getPosition().equals(Vec3(0, 0, 0.5), 2e-3));
  EXPECT_THROW(joint->getMotor1D(static_cast<Joint::DOF>(2)), std::out_of_range);
}

TEST_F(Constraints, FramesSetTheAxisOfEitherBody) {
  simulation->setUniformGravity(Vec3());
  auto const base = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 1));
  base->setMotionControl(zor::RigidBody::STATIC);
  auto const wheel = addSphere(0.3, Vec3(0, 2, 1));
  // Z of the attachments along world Y.
  zor::Quat const turn(Vec3(0, 0, 1), Vec3(0, 1, 0));
  zor::ref_ptr<zor::Frame> const onWheel = new zor::Frame(zor::AffineMatrix4x4(turn, Vec3()));
  zor::ref_ptr<zor::Frame> const onBase = new zor::Frame(zor::AffineMatrix4x4(turn, Vec3(0, 1, 0)));
  auto const hinge = join(new zor::Hinge(wheel.get(), onWheel.get(), base.get(), onBase.get()));
  hinge->getMotor1D()->setEnable(true);
  hinge->getMotor1D()->setSpeed(1);
  hinge->setEnableCollisions(false);
  run(2.0);
  EXPECT_TRUE(wheel->getPosition().equals(Vec3(0, 1, 1), 1e-3))
      << "pulled together: " << wheel->getPosition();
  EXPECT_TRUE(wheel->getAngularVelocity().equals(Vec3(0, 1, 0), 1e-3));
  EXPECT_EQ(hinge->getNumBodies(), 2u);
  EXPECT_EQ(hinge->getBody(1), base.get());
  EXPECT_EQ(hinge->getNumDOF(), 5u);
}

TEST_F(Constraints, JoinedBodiesCollideOnlyWhenTold) {
  simulation->setUniformGravity(Vec3());
  auto const a = addBox(Vec3(0.5, 0.5, 0.5), Vec3());
  auto const b = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0.9, 0, 0));
  auto const joint = join(new zor::BallJoint(Vec3(0.45, 0, 0), a.get(), b.get()));
  run(0.5);
  EXPECT_TRUE(simulation->getSpace()->getGeometryContacts(a.get()).empty());
  joint->setEnableCollisions(true);
  simulation->stepForward();
  EXPECT_FALSE(simulation->getSpace()->getGeometryContacts(a.get()).empty());
}

TEST_F(Constraints, ActWhileTheirBodiesAreThere) {
  auto const upper = addSphere(0.1, Vec3());
  auto const lower = makeBody(new zorCollide::Sphere(0.1), Vec3(0, 0, -1));
  auto const hold = join(new zor::BallJoint(Vec3(), upper.get()));
  auto const joint = join(new zor::BallJoint(Vec3(0, 0, -0.5), lower.get(), upper.get()));
  run(0.2); // the lower body is not there yet
  simulation->add(lower.get());
  run(0.5);
  EXPECT_NEAR(lower->getPosition().z(), -1, 0.01);
  simulation->remove(upper.get());
  run(0.5);
  EXPECT_LT(lower->getPosition().z(), -1.5) << "nothing to hang on";
  simulation->remove(lower.get());
  simulation->stepForward();
  EXPECT_TRUE(simulation->remove(joint.get()));
  EXPECT_FALSE(simulation->remove(joint.get()));
}

TEST_F(Constraints, WrongArgumentsAreRefused) {
  auto const body = addBar();
  EXPECT_THROW(new zor::Hinge(Vec3(), Vec3(0, 0, 1), nullptr), std::invalid_argument);
  EXPECT_THROW(new zor::Hinge(Vec3(), Vec3(), body.get()), std::invalid_argument);
  EXPECT_THROW(new zor::BallJoint(Vec3(), body.get(), body.get()), std::invalid_argument);
  EXPECT_THROW(new zor::DistanceJoint(body.get(), Vec3(), body->getPosition()), std::invalid_argument);
  EXPECT_THROW(new zor::Prismatic(Vec3(0, NAN, 0), body.get()), std::invalid_argument);
  zor::ref_ptr<zor::Hinge> const hinge = new zor::Hinge(Vec3(), Vec3(0, 1, 0), body.get());
  EXPECT_THROW(hinge->getMotor1D()->setForceRange(zor::RangeReal(1, 2)), std::invalid_argument);
  EXPECT_THROW(hinge->getMotor1D()->setSpeed(INFINITY), std::invalid_argument);
  EXPECT_THROW(hinge->getRange1D()->setRange(2, 1), std::invalid_argument);
  EXPECT_THROW(hinge->getLock1D()->setCompliance(-1), std::invalid_argument);
  EXPECT_THROW(hinge->getBody(2), std::out_of_range);
}

// Python may keep a controller longer than the constraint.
TEST_F(Constraints, ControllersOutliveTheirConstraint) {
  auto const body = addBar();
  zor::ref_ptr<zor::Motor1D> motor;
  {
    zor::ref_ptr<zor::Hinge> const hinge = new zor::Hinge(Vec3(), Vec3(0, 1, 0), body.get());
    motor = hinge->getMotor1D();
  }
  motor->setSpeed(3);
  EXPECT_DOUBLE_EQ(motor->getSpeed(), 3);
}

} // namespace
