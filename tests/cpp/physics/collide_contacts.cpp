#include <cmath>

#include <zor/ContactMaterial.h>
#include <zorCollide/Compound.h>
#include <zorCollide/HeightField.h>
#include <zorCollide/Space.h>

#include "CollideSamples.h"
#include "PhysicsFixture.h"

namespace {

using namespace zorCollide;
using zor::AffineMatrix4x4;
using zor::ref_ptr;
using zor::Vec3;

class CollideContacts : public PhysicsFixture {
protected:
  Geometry* geometryOf(ref_ptr<zor::RigidBody> const& body) { return body->getGeometries()[0].get(); }

  ref_ptr<Geometry> addFixed(Shape* shape, Vec3 const& position = Vec3()) {
    ref_ptr<Geometry> geometry(new Geometry(shape));
    geometry->setPosition(position);
    simulation->add(geometry.get());
    return geometry;
  }

  Space& space() { return *simulation->getSpace(); }
};

TEST_F(CollideContacts, BoxStandsOnItsCorners) {
  auto const ground = addGround();
  auto const box = addBox(Vec3(0.5, 0.6, 0.4), Vec3(1, 2, 0.4));
  run(1.0);
  auto const contacts = space().getGeometryContacts(geometryOf(box), ground.get());
  ASSERT_EQ(contacts.size(), 1u);
  EXPECT_EQ(contacts[0].getGeometry1(), geometryOf(box));
  EXPECT_EQ(contacts[0].getGeometry2(), ground.get());
  EXPECT_EQ(contacts[0].getRigidBody(0), box.get());
  EXPECT_EQ(contacts[0].getRigidBody(1), nullptr);
  ASSERT_EQ(contacts[0].getPoints().size(), 4u);
  for (ContactPoint const& point : contacts[0].getPoints()) {
    EXPECT_TRUE(point.getNormal().equals(Vec3(0, 0, 1), 1e-3)) << point.getNormal();
    EXPECT_NEAR(std::abs(point.getPoint().x() - 1), 0.5, 1e-2);
    EXPECT_NEAR(std::abs(point.getPoint().y() - 2), 0.6, 1e-2);
    EXPECT_NEAR(point.getPoint().z(), 0.0, 5e-3);
    EXPECT_NEAR(point.getDepth(), 0.0, 5e-3);
  }
  double const weight = box->getMassProperties()->getMass() * simulation->getUniformGravity().length();
  EXPECT_NEAR(contacts[0].getForce().z(), weight, 0.02 * weight);
  auto const reversed = space().getGeometryContacts(ground.get(), geometryOf(box));
  EXPECT_NEAR(reversed[0].getForce().z(), -weight, 0.02 * weight);
  EXPECT_EQ(space().getGeometryContacts(box.get()).size(), 1u);
  EXPECT_EQ(space().getGeometryContacts().size(), 1u);
}

TEST_F(CollideContacts, FrictionForceHoldsOnASlope) {
  double const angle = 0.3;
  ref_ptr<Geometry> const slope(new Geometry(new Plane(Vec3(-std::sin(angle), 0, std::cos(angle)), Vec3())));
  simulation->add(slope.get());
  auto const box = makeBody(new Box(0.5, 0.5, 0.2));
  box->setTransform(
      AffineMatrix4x4(zor::Quat(-angle, Vec3(0, 1, 0)), Vec3(-std::sin(angle), 0, std::cos(angle)) * 0.2));
  simulation->add(box.get());
  run(1.0);
  auto const contacts = space().getGeometryContacts(geometryOf(box));
  ASSERT_EQ(contacts.size(), 1u);
  double const weight = box->getMassProperties()->getMass() * simulation->getUniformGravity().length();
  Vec3 friction;
  for (ContactPoint const& point : contacts[0].getPoints())
    friction += point.getTangentialForce();
  // Uphill, which is towards +x.
  EXPECT_NEAR(friction.length(), weight * std::sin(angle), 0.03 * weight);
  EXPECT_GT(friction.x(), 0.0);
  EXPECT_TRUE(contacts[0].getForce().equals(Vec3(0, 0, weight), 0.03 * weight)) << contacts[0].getForce();
}

TEST_F(CollideContacts, ContactMaterialDecidesSliding) {
  ref_ptr<zor::Material> const ice(new zor::Material("ice")), steel(new zor::Material("steel"));
  auto const ground = addGround();
  ground->setMaterial(ice.get());
  auto const slider = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5));
  auto const other = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 5, 0.5));
  geometryOf(slider)->setMaterial(steel.get());
  ref_ptr<zor::ContactMaterial> const slippery(new zor::ContactMaterial(steel.get(), ice.get()));
  slippery->setFriction(0.0);
  simulation->add(slippery.get());
  EXPECT_EQ(space().getContactMaterial(ice.get(), steel.get()), slippery.get());
  slider->setVelocity(Vec3(2, 0, 0));
  other->setVelocity(Vec3(2, 0, 0));
  run(1.5);
  EXPECT_NEAR(slider->getVelocity().x(), 2.0, 1e-2);
  EXPECT_NEAR(other->getVelocity().x(), 0.0, 1e-2);
  slippery->setFriction(0.4); // read at once
  run(0.2);
  EXPECT_NEAR(slider->getVelocity().x(), 2.0 - 0.4 * simulation->getUniformGravity().length() * 0.2, 0.08);
  EXPECT_TRUE(space().remove(slippery.get()));
  EXPECT_EQ(space().getContactMaterial(ice.get(), steel.get()), nullptr);
}

TEST_F(CollideContacts, RestitutionBounces) {
  ref_ptr<zor::Material> const rubber(new zor::Material("rubber"));
  auto const ground = addGround();
  double const restitutions[] = {0.0, 0.5, 1.0};
  ref_ptr<zor::RigidBody> balls[3];
  for (int i = 0; i < 3; ++i) {
    balls[i] = addSphere(0.2, Vec3(i, 0, 1.2));
    ref_ptr<zor::Material> const material(new zor::Material);
    geometryOf(balls[i])->setMaterial(material.get());
    ref_ptr<zor::ContactMaterial> const contact(
        new zor::ContactMaterial(ground->getMaterial(), material.get()));
    contact->setRestitution(restitutions[i]);
    simulation->add(contact.get());
  }
  simulation->setTimeStep(1.0 / 1000);
  double highest[3] = {};
  run(0.46); // the fall takes 0.45 s
  for (int step = 0; step < 500; ++step) {
    simulation->stepForward();
    for (int i = 0; i < 3; ++i)
      highest[i] = std::max(highest[i], balls[i]->getPosition().z() - 0.2);
  }
  EXPECT_NEAR(highest[0], 0.0, 0.01);
  EXPECT_NEAR(highest[1], 0.25, 0.02); // the square of the restitution
  EXPECT_NEAR(highest[2], 1.0, 0.05);
}

TEST_F(CollideContacts, SensorFeelsButDoesNotPush) {
  auto const sensor = addFixed(new Box(1, 1, 0.5), Vec3(0, 0, 2));
  sensor->setSensor(true);
  auto const box = addBox(Vec3(0.1, 0.1, 0.1), Vec3(0, 0, 2));
  simulation->stepForward();
  auto const contacts = space().getGeometryContacts(sensor.get());
  ASSERT_EQ(contacts.size(), 1u);
  EXPECT_TRUE(contacts[0].isSensorContact());
  EXPECT_EQ(contacts[0].getForce().length(), 0.0);
  run(0.5);
  double const fallen = 0.5 * simulation->getUniformGravity().length() * simulation->getTimeStamp() *
                        simulation->getTimeStamp();
  EXPECT_NEAR(box->getPosition().z(), 2.0 - fallen, 0.1);
  EXPECT_TRUE(box->getPosition().z() < 1.0);
  // A sensor of a body goes with it, has no mass and does not meet its own body.
  ref_ptr<Geometry> const feeler(new Geometry(new Sphere(0.5)));
  feeler->setSensor(true);
  double const mass = box->getMassProperties()->getMass();
  box->add(feeler.get());
  EXPECT_DOUBLE_EQ(box->getMassProperties()->getMass(), mass);
  auto const wall = addFixed(new Box(0.1, 1, 1));
  wall->setPosition(box->getPosition() + Vec3(0.4, 0, 0));
  simulation->stepForward();
  auto const felt = space().getGeometryContacts(feeler.get());
  ASSERT_EQ(felt.size(), 1u);
  EXPECT_EQ(felt[0].getGeometry2(), wall.get());
  feeler->setSensor(false);
  EXPECT_GT(box->getMassProperties()->getMass(), mass);
}

TEST_F(CollideContacts, PairsAndGroupsAreKeptApart) {
  auto const ground = addGround();
  auto const lone = addBox(Vec3(0.2, 0.2, 0.2), Vec3(0, 0, 0.2));
  auto const grouped = addBox(Vec3(0.2, 0.2, 0.2), Vec3(2, 0, 0.2));
  auto const ghost = addBox(Vec3(0.2, 0.2, 0.2), Vec3(4, 0, 0.2));
  auto const solid = addBox(Vec3(0.2, 0.2, 0.2), Vec3(6, 0, 0.2));
  run(0.2); // they stand first, so that existing contacts have to go
  geometryOf(lone)->setEnableCollisions(ground.get(), false);
  EXPECT_FALSE(ground->getEnableCollisions(geometryOf(lone)));
  ground->addGroup(1);
  geometryOf(grouped)->addGroup(2);
  space().setEnablePair(2, 1, false);
  EXPECT_FALSE(space().canCollide(ground.get(), geometryOf(grouped)));
  geometryOf(ghost)->setEnableCollisions(false);
  run(0.5);
  for (auto const& body : {lone, grouped, ghost})
    EXPECT_LT(body->getPosition().z(), -0.5);
  EXPECT_NEAR(solid->getPosition().z(), 0.2, 1e-2);
  EXPECT_TRUE(space().castRay(ghost->getPosition() + Vec3(0, 0, 5), Vec3(0, 0, -1)).hasHit());

  space().setEnablePair(1, 2, true);
  grouped->setPosition(Vec3(2, 0, 0.25));
  grouped->setVelocity(Vec3());
  run(0.5);
  EXPECT_NEAR(grouped->getPosition().z(), 0.2, 1e-2);
}

TEST_F(CollideContacts, OneGeometryOfABodyIsKeptApart) {
  auto const ground = addGround();
  ref_ptr<zor::RigidBody> const body(new zor::RigidBody);
  ref_ptr<Geometry> const leg(new Geometry(new Box(0.1, 0.1, 0.3))),
      top(new Geometry(new Box(0.5, 0.5, 0.1)));
  body->add(top.get());
  body->add(leg.get(), AffineMatrix4x4::translate(0, 0, -0.4));
  body->setPosition(Vec3(0, 0, 0.7));
  simulation->add(body.get());
  run(0.3);
  EXPECT_NEAR(body->getPosition().z(), 0.7, 1e-2);
  ASSERT_EQ(space().getGeometryContacts(body.get()).size(), 1u);
  EXPECT_EQ(space().getGeometryContacts(body.get())[0].getGeometry1(), leg.get());
  leg->setEnableCollisions(ground.get(), false);
  run(1.0);
  EXPECT_NEAR(body->getPosition().z(), 0.1, 1e-2);
  ASSERT_EQ(space().getGeometryContacts(body.get()).size(), 1u);
  EXPECT_EQ(space().getGeometryContacts(body.get())[0].getGeometry1(), top.get());
}

TEST_F(CollideContacts, EverySolidRestsOnEveryGround) {
  zor::Vec3Vector const corners{Vec3(-50, -5, 0), Vec3(50, -5, 0), Vec3(50, 5, 0), Vec3(-50, 5, 0)};
  Shape* const grounds[] = {new Plane(Vec3(0, 0, 1), Vec3()), new Box(50, 5, 1),
                            new Trimesh(corners, {0, 1, 2, 0, 2, 3}), new HeightField(101, 11, 100, 10)};
  for (Shape* ground : grounds) {
    SCOPED_TRACE(ground->getTypeName());
    simulation = new zorSDK::Simulation;
    bool const box = ground->getType() == Shape::BOX;
    auto const floor = addFixed(ground, Vec3(0, 0, box ? -1 : 0));
    std::vector<ref_ptr<zor::RigidBody>> bodies;
    for (samples::Solid const& solid : samples::solids()) {
      bodies.push_back(makeBody(
          solid.shape.get(), Vec3(-20.0 + 5.0 * static_cast<double>(bodies.size()), 0.3, 2.5), solid.name));
      simulation->add(bodies.back().get());
    }
    run(4.0);
    for (auto const& body : bodies) {
      SCOPED_TRACE(body->getName());
      Vec3 lower, upper;
      geometryOf(body)->getBounds(lower, upper);
      EXPECT_NEAR(lower.z(), 0.0, 0.012);
      auto const contacts = space().getGeometryContacts(geometryOf(body), floor.get());
      ASSERT_EQ(contacts.size(), 1u);
      double const weight = body->getMassProperties()->getMass() * simulation->getUniformGravity().length();
      EXPECT_GT(contacts[0].getForce().z(), 0.5 * weight);
    }
  }
}

TEST_F(CollideContacts, RaysMeetBodiesWhereTheStepHasMovedThem) {
  simulation->setUniformGravity(Vec3());
  auto const box = addBox(Vec3(0.5, 0.5, 0.5), Vec3());
  ref_ptr<Geometry> const feeler(new Geometry(new Sphere(0.2)));
  feeler->setSensor(true);
  box->add(feeler.get(), AffineMatrix4x4::translate(3, 0, 0));
  box->setVelocity(Vec3(60, 0, 0));
  for (int step = 0; step < 3; ++step) {
    simulation->stepForward();
    double const x = box->getPosition().x();
    EXPECT_TRUE(space().castRay(Vec3(x + 0.49, 0, 5), Vec3(0, 0, -1)).hasHit());
    EXPECT_FALSE(space().castRay(Vec3(x - 0.51, 0, 5), Vec3(0, 0, -1)).hasHit());
    EXPECT_EQ(space().castRay(Vec3(x + 3.1, 0, 5), Vec3(0, 0, -1), 9.0, true).getGeometry(), feeler.get());
  }
  box->setPosition(Vec3(0, 20, 0));
  EXPECT_EQ(space().castRay(Vec3(3, 20, 5), Vec3(0, 0, -1), 9.0, true).getGeometry(), feeler.get());
}

TEST_F(CollideContacts, NothingStumblesOverInnerEdges) {
  ref_ptr<HeightField> const field(new HeightField(41, 9, 20, 4));
  Shape* const grounds[] = {field.get(), new Trimesh(field->getVertices(), field->getIndices())};
  for (Shape* ground : grounds) {
    SCOPED_TRACE(ground->getTypeName());
    simulation = new zorSDK::Simulation;
    ref_ptr<zor::Material> const ice(new zor::Material("ice", 1000.0, 0.0));
    addFixed(ground)->setMaterial(ice.get());
    ref_ptr<zor::RigidBody> const sliders[] = {makeBody(new Box(0.3, 0.2, 0.2), Vec3(-8, -1, 0.202)),
                                               makeBody(new Cylinder(0.2, 0.4), Vec3(-8, 0.1, 0.202)),
                                               makeBody(new Sphere(0.2), Vec3(-8, 1, 0.202))};
    for (auto const& slider : sliders) {
      slider->setVelocity(Vec3(3, 0, 0));
      simulation->add(slider.get());
    }
    for (int step = 0; step < 300; ++step) {
      simulation->stepForward();
      for (auto const& slider : sliders)
        ASSERT_NEAR(slider->getPosition().z(), 0.2, 0.01) << "after " << step << " steps";
    }
    for (auto const& slider : sliders) {
      EXPECT_NEAR(slider->getVelocity().x(), 3.0, 0.01);
      EXPECT_NEAR(slider->getVelocity().y(), 0.0, 0.01);
    }
  }
}

TEST_F(CollideContacts, LargeMeshIsABody) {
  // A torus of 20,000 triangles.
  constexpr zor::UInt32 around = 100, across = 100;
  zor::Vec3Vector vertices;
  zor::UInt32Vector indices;
  for (zor::UInt32 i = 0; i < around; ++i)
    for (zor::UInt32 k = 0; k < across; ++k) {
      double const u = 2 * M_PI * i / around, v = 2 * M_PI * k / across;
      double const r = 1.0 + 0.3 * std::cos(v);
      vertices.push_back(Vec3(r * std::cos(u), r * std::sin(u), 0.3 * std::sin(v)));
      zor::UInt32 const a = i * across + k, b = i * across + (k + 1) % across;
      zor::UInt32 const c = (i + 1) % around * across + k, d = (i + 1) % around * across + (k + 1) % across;
      for (zor::UInt32 const index : {a, c, b, b, c, d})
        indices.push_back(index);
    }
  ref_ptr<Trimesh> const mesh(new Trimesh(vertices, indices, "torus"));
  EXPECT_TRUE(mesh->isClosed());
  EXPECT_NEAR(mesh->getVolume(), 2 * M_PI * M_PI * 0.09, 0.01);
  addGround();
  auto const body = makeBody(mesh.get(), Vec3(0, 0, 1));
  simulation->add(body.get());
  run(2.0);
  EXPECT_NEAR(body->getPosition().z(), 0.3, 0.01);
  // Rays meet the triangles, so that the hole is open.
  EXPECT_NEAR(space().castRay(Vec3(0, 0, 5), Vec3(0, 0, -1)).getPoint().z(), 0.0, 1e-6);
  EXPECT_NEAR(space().castRay(Vec3(1, 0, 5), Vec3(0, 0, -1)).getPoint().z(), body->getPosition().z() + 0.3,
              1e-2);
  // As one hull it carries a ball in the hole, as parts it lets it through.
  auto const ball = addSphere(0.1, Vec3(0, 0, 1.2));
  run(1.0);
  EXPECT_NEAR(ball->getPosition().z(), 0.7, 0.02);
  mesh->setNumConvexParts(16);
  run(1.0);
  EXPECT_NEAR(ball->getPosition().z(), 0.1, 0.02);
}

TEST(CollideSpace, AnswersWithoutASimulation) {
  ref_ptr<Space> const one(new Space), other(new Space);
  ref_ptr<Geometry> const a(new Geometry(new Box(1, 1, 1))), b(new Geometry(new Sphere(1)));
  b->setPosition(Vec3(0, 0, 1.9));
  one->add(a.get());
  one->add(b.get());
  one->update();
  auto const contacts = one->getGeometryContacts(b.get());
  ASSERT_EQ(contacts.size(), 1u);
  EXPECT_NEAR(contacts[0].getPoints()[0].getDepth(), 0.1, 1e-6);
  EXPECT_TRUE(contacts[0].getPoints()[0].getNormal().equals(Vec3(0, 0, 1), 1e-6));
  EXPECT_EQ(contacts[0].getForce().length(), 0.0);
  b->setPosition(Vec3(0, 0, 3));
  one->update();
  EXPECT_TRUE(one->getGeometryContacts().empty());

  // One space's materials and pairs are not another's.
  EXPECT_THROW(other->add(a.get()), std::invalid_argument);
  EXPECT_TRUE(one->remove(a.get()));
  EXPECT_FALSE(one->remove(a.get()));
  EXPECT_TRUE(other->add(a.get()));
  EXPECT_FALSE(other->add(a.get()));
  EXPECT_EQ(a->getSpace(), other.get());
}

TEST(CollideSpace, LeavingIsTold) {
  ref_ptr<Geometry> geometry(new Geometry(new Sphere(1)));
  std::vector<Space*> left;
  Geometry::RemovalEvent::CallbackType const callback(
      [&](Space* space, Geometry*) { left.push_back(space); });
  geometry->getRemovalEvent().add(callback);
  Space* first = nullptr;
  {
    ref_ptr<Space> const space(new Space);
    first = space.get();
    space->add(geometry.get());
    space->remove(geometry.get());
    ASSERT_EQ(left, std::vector<Space*>{first});
    space->add(geometry.get());
  }
  ASSERT_EQ(left.size(), 2u); // with the space itself
  EXPECT_EQ(geometry->getSpace(), nullptr);
  geometry = nullptr;
  ASSERT_EQ(left.size(), 3u);
  EXPECT_EQ(left[2], nullptr);
}

} // namespace
