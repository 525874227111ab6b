#include <zor/ContactMaterial.h>

#include "PhysicsFixture.h"

using zor::Vec3;

namespace {

constexpr double G = 9.81;

class ContactForces : public PhysicsFixture {
protected:
  Vec3 forceOn(zor::RigidBody* body) const {
    Vec3 sum;
    for (zorCollide::GeometryContact const& contact : simulation->getSpace()->getGeometryContacts(body))
      sum += contact.getForce();
    return sum;
  }
};

TEST_F(ContactForces, RestingBoxIsCarriedWithItsWeight) {
  addGround();
  auto const box = addBox(Vec3(0.5, 0.4, 0.3), Vec3(0, 0, 0.35));
  for (zor::UInt const subSteps : {1, 3}) {
    simulation->setNumSubSteps(subSteps);
    run(2.0);
    double const weight = box->getMassProperties()->getMass() * G;
    EXPECT_NEAR(forceOn(box.get()).z(), weight, 0.02 * weight) << subSteps;
    EXPECT_NEAR(forceOn(box.get()).x(), 0, 0.02 * weight);
    EXPECT_NEAR(box->getPosition().z(), 0.3, 0.005);
  }
}

TEST_F(ContactForces, CornersOfBoxShareItsWeight) {
  addGround();
  auto const box = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  run(0.5);
  auto const contacts = simulation->getSpace()->getGeometryContacts(box.get());
  ASSERT_EQ(contacts.size(), 1u);
  ASSERT_EQ(contacts[0].getPoints().size(), 4u);
  double const quarter = box->getMassProperties()->getMass() * G / 4;
  for (zorCollide::ContactPoint const& point : contacts[0].getPoints())
    EXPECT_NEAR(point.getNormalForceMagnitude(), quarter, 0.05 * quarter);
}

TEST_F(ContactForces, LightBodyCarriesHeavyOne) {
  addGround();
  auto const light = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  auto const heavy = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 1.5));
  light->getMassProperties()->setMass(1);
  heavy->getMassProperties()->setMass(1000);
  simulation->setNumSolverIterations(500);
  run(3.0);
  EXPECT_NEAR(heavy->getPosition().z(), 1.5, 0.05);
  EXPECT_NEAR(forceOn(heavy.get()).z(), 1000 * G, 0.02 * 1000 * G);
}

TEST_F(ContactForces, FrictionHoldsBelowItsAngleAndSlidesAbove) {
  zor::ref_ptr<zor::Material> const material = new zor::Material("wood");
  zor::ref_ptr<zor::ContactMaterial> const pair = new zor::ContactMaterial(material.get(), material.get());
  pair->setFriction(0.5);
  simulation->add(pair.get());
  addGround()->setMaterial(material.get());
  auto const box = addBox(Vec3(0.5, 0.5, 0.1), Vec3(0, 0, 0.1));
  box->getGeometries()[0]->setMaterial(material.get());
  run(0.5);
  double const weight = box->getMassProperties()->getMass() * G;
  auto const pull = [&](double force, double seconds) {
    for (double t = 0; t < seconds; t += simulation->getTimeStep()) {
      box->addForce(Vec3(force, 0, 0));
      simulation->stepForward();
    }
  };
  pull(0.45 * weight, 1.0);
  EXPECT_LT(box->getVelocity().length(), 1e-3);
  pull(0.7 * weight, 1.0);
  EXPECT_NEAR(box->getVelocity().x(), 0.2 * G, 0.05 * G);
}

// A pile: nothing may sink through the floor, whatever lies on top.
TEST_F(ContactForces, PileStaysAboveTheGround) {
  addGround();
  zor::RigidBodyRefVector pile;
  for (int i = 0; i < 64; ++i) {
    Vec3 const place((i % 4) * 0.5, (i / 4 % 4) * 0.5, 0.5 + (i / 16) * 0.6);
    pile.push_back(i % 2 ? addSphere(0.2, place) : addBox(Vec3(0.2, 0.2, 0.2), place));
  }
  run(4.0);
  for (auto const& body : pile)
    EXPECT_GT(body->getPosition().z(), 0.15) << body->getPosition();
}

} // namespace
