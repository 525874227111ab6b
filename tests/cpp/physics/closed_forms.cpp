// Motion against what mechanics says about it. Tolerances are what a step of the given length may be off.

#include <cmath>

#include <zor/BallJoint.h>
#include <zor/ContactMaterial.h>
#include <zor/DistanceJoint.h>
#include <zor/Hinge.h>
#include <zor/Prismatic.h>
#include <zorCollide/Cylinder.h>

#include "PhysicsFixture.h"

using zor::Vec3;

namespace {

constexpr double G = 9.81;

class ClosedForms : public PhysicsFixture {
protected:
  /** Everything that is made from now on shares one material, and meets itself like this. */
  zor::ref_ptr<zor::ContactMaterial> touchWith(double friction, double restitution) {
    material = new zor::Material("all");
    zor::ref_ptr<zor::ContactMaterial> pair = new zor::ContactMaterial(material.get(), material.get());
    pair->setFriction(friction);
    pair->setRestitution(restitution);
    simulation->add(pair.get());
    return pair;
  }

  void make(zor::RigidBody* body) { body->getGeometries()[0]->setMaterial(material.get()); }

  /** Gravity tilted by an angle: the ground is an incline that falls towards +x. */
  void incline(double angle) {
    addGround()->setMaterial(material.get());
    simulation->setUniformGravity(Vec3(G * std::sin(angle), 0, -G * std::cos(angle)));
  }

  /** Mean time between the upward zero crossings of a quantity. */
  template <class Quantity>
  double period(Quantity quantity, int periods) {
    double last = quantity(), first = -1, crossing = -1;
    for (int found = -1; found < periods && simulation->getTimeStamp() < 100;) {
      simulation->stepForward();
      double const now = quantity();
      if (last < 0 && now >= 0) {
        crossing = simulation->getTimeStamp() - simulation->getTimeStep() * now / (now - last);
        first = found < 0 ? crossing : first;
        ++found;
      }
      last = now;
    }
    return (crossing - first) / periods;
  }

  zor::ref_ptr<zor::Material> material;
};

TEST_F(ClosedForms, ProjectileFliesAParabola) {
  simulation->setTimeStep(1e-3);
  auto const ball = addSphere(0.1, Vec3());
  double const speed = 20, angle = zor::PI / 4;
  ball->setVelocity(Vec3(speed * std::cos(angle), 0, speed * std::sin(angle)));
  double highest = 0;
  while (ball->getVelocity().z() > 0 || ball->getPosition().z() > 0) {
    simulation->stepForward();
    highest = std::max(highest, ball->getPosition().z());
  }
  EXPECT_NEAR(highest, speed * speed / (4 * G), 0.01);
  EXPECT_NEAR(ball->getPosition().x(), speed * speed / G, 0.03) << "range, within a step and a bit";
}

// T = 2 pi sqrt(l / g) / agm(1, cos(a / 2)) for a point mass, whatever the amplitude a.
TEST_F(ClosedForms, PendulumPeriodGrowsWithItsAmplitude) {
  for (double const amplitude : {0.05, 1.0, 2.5}) {
    simulation = new zorSDK::Simulation;
    simulation->setTimeStep(1e-3);
    auto const bob = addSphere(0.05, Vec3(std::sin(amplitude), 0, -std::cos(amplitude)));
    zor::ref_ptr<zor::DistanceJoint> const rod = new zor::DistanceJoint(bob.get(), Vec3(), Vec3());
    simulation->add(rod.get());
    double a = 1, b = std::cos(amplitude / 2);
    for (int i = 0; i < 20; ++i) {
      double const mean = (a + b) / 2;
      b = std::sqrt(a * b);
      a = mean;
    }
    double const expected = 2 * zor::PI / std::sqrt(G) / a;
    EXPECT_NEAR(period([&] { return bob->getPosition().x(); }, 3), expected, 2e-3 * expected) << amplitude;
  }
}

TEST_F(ClosedForms, FrictionHoldsBelowItsAngleAndLetsGoAbove) {
  double const friction = 0.4, critical = std::atan(friction);
  for (double const offset : {-0.02, 0.02, 0.3}) {
    simulation = new zorSDK::Simulation;
    touchWith(friction, 0);
    double const angle = critical + offset;
    incline(angle);
    auto const box = addBox(Vec3(0.5, 0.5, 0.1), Vec3(0, 0, 0.1));
    make(box.get());
    run(1.0);
    double const before = box->getVelocity().x();
    run(1.0);
    if (offset < 0)
      EXPECT_LT(box->getPosition().x(), 2e-3) << "creeps less than 1 mm/s";
    else
      EXPECT_NEAR(box->getVelocity().x() - before, G * (std::sin(angle) - friction * std::cos(angle)),
                  0.01 * G)
          << offset;
  }
}

// a = g sin(alpha) / (1 + I / (m r^2)) while friction suffices to roll.
TEST_F(ClosedForms, BallAndCylinderRollDownAnIncline) {
  double const angle = 0.3, radius = 0.2;
  struct Case {
    zor::ref_ptr<zorCollide::Shape> shape;
    double share;
  };
  Case const cases[] = {{new zorCollide::Sphere(radius), 5.0 / 7},
                        {new zorCollide::Cylinder(radius, 1.0), 2.0 / 3}};
  for (auto const& [shape, share] : cases) { // a cylinder lies along y, so it rolls along x
    simulation = new zorSDK::Simulation;
    simulation->setTimeStep(1.0 / 240);
    touchWith(0.6, 0);
    incline(angle);
    auto const body = makeBody(shape.get(), Vec3(0, 0, radius));
    make(body.get());
    simulation->add(body.get());
    run(2.0);
    EXPECT_NEAR(body->getVelocity().x(), share * G * std::sin(angle) * 2, 0.01 * G);
    EXPECT_NEAR(body->getAngularVelocity().y() * radius, body->getVelocity().x(), 0.01) << "without slipping";
  }
}

// Rolling friction of arm b brakes a ball at 5/7 g b / r; spinning friction of arm b takes the spin of a ball
// on the spot at g b / (2/5 r^2).
TEST_F(ClosedForms, RollingAndSpinningFrictionBrake) {
  double const radius = 0.25, arm = 0.01;
  auto const pair = touchWith(0.5, 0);
  pair->setRollingFriction(arm);
  addGround()->setMaterial(material.get());
  auto const rolling = addSphere(radius, Vec3(0, 0, radius));
  rolling->setVelocity(Vec3(3, 0, 0));
  rolling->setAngularVelocity(Vec3(0, 3 / radius, 0));
  make(rolling.get());
  run(1.0);
  EXPECT_NEAR(rolling->getVelocity().x(), 3 - 5.0 / 7 * G * arm / radius, 0.02);
  run(12.0);
  EXPECT_LT(rolling->getVelocity().length(), 1e-3) << "it comes to rest";

  pair->setRollingFriction(0);
  pair->setSpinningFriction(arm);
  auto const spinning = addSphere(radius, Vec3(5, 5, radius));
  spinning->setAngularVelocity(Vec3(0, 0, 10));
  make(spinning.get());
  run(1.0);
  EXPECT_NEAR(spinning->getAngularVelocity().z(), 10 - G * arm / (0.4 * radius * radius), 0.1);
}

// Frequency and decay of a mass on a spring: x = exp(-d t) cos(w t), w^2 = k/m - d^2, d = c / (2 m).
TEST_F(ClosedForms, SpringSwingsAndDecays) {
  simulation->setUniformGravity(Vec3());
  simulation->setTimeStep(5e-4);
  double const mass = 2, stiffness = 80, damping = 2;
  auto const body = addBox(Vec3(0.1, 0.1, 0.1), Vec3());
  body->getMassProperties()->setMass(mass);
  zor::ref_ptr<zor::Prismatic> const slider = new zor::Prismatic(Vec3(0, 0, 1), body.get());
  simulation->add(slider.get());
  slider->getLock1D()->setSpring(stiffness, damping);
  body->setPosition(Vec3(0, 0, 0.5));
  double const decay = damping / (2 * mass), frequency = std::sqrt(stiffness / mass - decay * decay);
  double const swing = 2 * zor::PI / frequency;
  EXPECT_NEAR(period([&] { return body->getPosition().z(); }, 2), swing, 2e-3 * swing);
  // The peak that ends the third swing, counted from the release.
  double peak = 0;
  while (simulation->getTimeStamp() < 3.3 * swing) {
    simulation->stepForward();
    if (simulation->getTimeStamp() > 2.7 * swing)
      peak = std::max(peak, body->getPosition().z());
  }
  double const expected = 0.5 * std::exp(-decay * 3 * swing);
  EXPECT_NEAR(peak, expected, 0.03 * expected) << "the implicit spring damps a little by itself";
}

TEST_F(ClosedForms, SoftContactSinksInByItsStiffness) {
  auto const pair = touchWith(0.5, 0);
  addGround()->setMaterial(material.get());
  auto const box = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  make(box.get());
  double const weight = box->getMassProperties()->getMass() * G;
  for (double const depth : {0.005, 0.08}) { // the deeper one is more than the engine pushes apart at once
    pair->setStiffness(weight / 4 / depth);
    pair->setDamping(0.3 * pair->getStiffness());
    run(6.0);
    EXPECT_NEAR(box->getPosition().z(), 0.5 - depth, 0.03 * depth);
  }
  pair->setStiffness(INFINITY);
  run(3.0);
  EXPECT_NEAR(box->getPosition().z(), 0.5, 2e-3);
}

// v' = (m1 - e m2) / (m1 + m2) v and (1 + e) m1 / (m1 + m2) v along the line of impact; nothing changes
// across.
TEST_F(ClosedForms, CollisionsKeepMomentumAndRestitution) {
  for (double const restitution : {0.0, 0.5, 1.0})
    for (double const across : {0.0, 2.0}) {
      simulation = new zorSDK::Simulation;
      simulation->setUniformGravity(Vec3());
      simulation->setTimeStep(1.0 / 480);
      touchWith(0, restitution);
      auto const first = addSphere(0.5, Vec3(-3, -across, 0));
      auto const second = addSphere(0.3, Vec3(0, 0, 0));
      make(first.get());
      make(second.get());
      double const v = 3, m1 = first->getMassProperties()->getMass(),
                   m2 = second->getMassProperties()->getMass();
      // Both meet when the first has gone 2.2 m, the way across included, so that the normal is x.
      first->setVelocity(Vec3(v, across * v / 2.2, 0));
      run(2.0);
      Vec3 const after1 = first->getVelocity(), after2 = second->getVelocity();
      EXPECT_TRUE((after1 * m1 + after2 * m2).equals(Vec3(v, across * v / 2.2, 0) * m1, 1e-9 * m1));
      EXPECT_NEAR(after1.x(), (m1 - restitution * m2) / (m1 + m2) * v, 0.03 * v)
          << restitution << ' ' << across;
      EXPECT_NEAR(after2.x(), (1 + restitution) * m1 / (m1 + m2) * v, 0.05 * v)
          << restitution << ' ' << across;
      EXPECT_NEAR(after2.y(), 0, 0.1 * v);
    }
}

TEST_F(ClosedForms, BallBouncesToItsRestitutionSquared) {
  double const restitution = 0.8, height = 1;
  touchWith(0, restitution);
  addGround()->setMaterial(material.get());
  simulation->setTimeStep(1.0 / 240);
  auto const ball = addSphere(0.1, Vec3(0, 0, 0.1 + height));
  make(ball.get());
  double const fall = std::sqrt(2 * height / G);
  run(fall + 0.5 * restitution * fall);
  double highest = 0;
  while (simulation->getTimeStamp() < fall * (1 + 1.5 * restitution)) {
    simulation->stepForward();
    highest = std::max(highest, ball->getPosition().z() - 0.1);
  }
  EXPECT_NEAR(highest, restitution * restitution * height, 0.02);
}

// A freely spinning body with three different moments of inertia tumbles, and keeps energy and angular
// momentum.
TEST_F(ClosedForms, TumblingKeepsEnergyAndAngularMomentum) {
  simulation->setUniformGravity(Vec3());
  auto const body = addBox(Vec3(0.1, 0.3, 0.6), Vec3());
  body->setAngularVelocity(Vec3(0.01, 6, 0.01)); // about the middle axis, which is unstable
  double const energy = body->getKineticEnergy();
  Vec3 const momentum = body->getAngularMomentum();
  int turnsOver = 0;
  double last = 6;
  while (simulation->getTimeStamp() < 60) {
    simulation->stepForward();
    ASSERT_NEAR(body->getKineticEnergy(), energy, 0.01 * energy);
    ASSERT_NEAR(body->getAngularMomentum().length(), momentum.length(), 0.01 * momentum.length());
    ASSERT_LT(body->getAngularMomentum().distance(momentum), 0.1 * momentum.length())
        << "by half a step's turn";
    double const spin = body->getLocalAngularVelocity().y();
    turnsOver += last * spin < 0 ? 1 : 0;
    last = spin;
  }
  EXPECT_GT(turnsOver, 3);
}

// A fast top on its point precesses at m g l / (I w).
TEST_F(ClosedForms, TopPrecesses) {
  simulation->setTimeStep(1.0 / 480);
  double const spin = 100, length = 0.5;
  auto const top = addSphere(0.1, Vec3(length, 0, 0)); // its axis lies along x
  top->getMassProperties()->setMass(1);
  top->getMassProperties()->setInertiaTensor(Vec3(0.02, 0.011, 0.011));
  top->setAngularVelocity(Vec3(spin, 0, G * length / (0.02 * spin)));
  top->setVelocity(Vec3(0, length * G * length / (0.02 * spin), 0));
  zor::ref_ptr<zor::BallJoint> const joint = new zor::BallJoint(Vec3(), top.get());
  joint->setDamping(0.01);
  simulation->add(joint.get());
  run(0.4);
  Vec3 const place = top->getPosition();
  EXPECT_NEAR(std::atan2(place.y(), place.x()), 0.4 * G * length / (0.02 * spin), 0.03);
  EXPECT_NEAR(place.z(), 0, 0.03) << "it does not fall";
  EXPECT_NEAR(top->getLocalAngularVelocity().x(), spin, 0.01 * spin);
}

// Each joint of a chain carries what hangs below it.
TEST_F(ClosedForms, ChainJointsCarryWhatHangsBelow) {
  constexpr int LINKS = 8;
  zor::ConstraintRefVector joints;
  zor::ref_ptr<zor::RigidBody> above;
  for (int i = 0; i < LINKS; ++i) {
    auto const link = addBox(Vec3(0.05, 0.05, 0.2), Vec3(0, 0, -0.2 - 0.4 * i));
    link->getMassProperties()->setMass(2);
    joints.push_back(new zor::BallJoint(Vec3(0, 0, -0.4 * i), link.get(), above.get()));
    joints.back()->setEnableForceStatistics(true);
    simulation->add(joints.back().get());
    above = link;
  }
  for (auto const type : {zorSDK::Simulation::SEQUENTIAL_IMPULSES, zorSDK::Simulation::CONJUGATE_GRADIENT}) {
    simulation->setSolverType(type);
    run(2.0);
    for (auto const& joint : joints)
      joint->setEnableForceStatistics(true); // starts again, without the swinging in
    run(1.0);
    for (int i = 0; i < LINKS; ++i) {
      double const load = 2 * G * (LINKS - i);
      zor::ForceStatistics const force = joints[static_cast<size_t>(i)]->getForceStatistics();
      EXPECT_EQ(force.getCount(), 60u);
      EXPECT_NEAR(force.getMean(), load, 0.005 * load);
      EXPECT_GE(force.getMinimum(), 0.98 * load);
      EXPECT_LE(force.getMaximum(), 1.02 * load);
    }
  }
}

// The last ball leaves with the speed of the first, and the balls in between stay where they are.
TEST_F(ClosedForms, CradleKeepsItsEnergy) {
  constexpr int BALLS = 5;
  double const radius = 0.1, length = 1;
  simulation->setTimeStep(1.0 / 960);
  simulation->setNumSolverIterations(100);
  touchWith(0, 1);
  zor::RigidBodyRefVector balls;
  for (int i = 0; i < BALLS; ++i) {
    double const x = (2 * radius + 2e-4) * i, angle = i == 0 ? 0.6 : 0;
    auto const ball =
        addSphere(radius, Vec3(x - length * std::sin(angle), 0, length * (1 - std::cos(angle))));
    make(ball.get());
    zor::ref_ptr<zor::DistanceJoint> const string =
        new zor::DistanceJoint(ball.get(), Vec3(), Vec3(x, 0, length));
    simulation->add(string.get());
    balls.push_back(ball.get());
  }
  double const mass = balls[0]->getMassProperties()->getMass();
  auto const energy = [&] {
    double sum = 0;
    for (auto const& ball : balls)
      sum += ball->getKineticEnergy() + mass * G * ball->getPosition().z();
    return sum;
  };
  double const before = energy(), highest = length * (1 - std::cos(0.6));
  run(2 * zor::PI / std::sqrt(G) * 0.5 * 1.023); // half a period at this amplitude
  EXPECT_NEAR(balls[BALLS - 1]->getPosition().z(), highest, 0.03 * highest);
  for (int i = 0; i < BALLS - 1; ++i)
    EXPECT_LT(balls[static_cast<size_t>(i)]->getPosition().z(), 0.03 * highest) << i;
  EXPECT_NEAR(energy(), before, 0.03 * before);
  run(6.0);
  EXPECT_NEAR(energy(), before, 0.1 * before);
}

} // namespace
