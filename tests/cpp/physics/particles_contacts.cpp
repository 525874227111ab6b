// Particles and geometries: every shape, moving ones, bodies that are pushed, filters.

#include <numbers>

#include <gmock/gmock.h>

#include <zorCollide/Capsule.h>
#include <zorCollide/Compound.h>
#include <zorCollide/Cone.h>
#include <zorCollide/Convex.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/HeightField.h>
#include <zorCollide/Trimesh.h>

#include "ParticleFixture.h"

namespace {

constexpr double G = 9.81;
constexpr double R = 0.05;

class ParticleContacts : public ParticleFixture {
protected:
  // Where a particle that falls on the middle of a shape comes to rest.
  double restingHeight(zorCollide::Shape* shape, zor::Quat const& rotation = zor::Quat()) {
    zor::ref_ptr<zorCollide::Geometry> const geometry = addFixed(shape, zor::Vec3(), rotation);
    particles->clear();
    particles->addParticle(zor::Vec3(0, 0, 1), R);
    run(1);
    simulation->remove(geometry.get());
    return particles->getPosition(0).z() - R;
  }

  static zorCollide::Trimesh* makePyramid(double half, double height) {
    return new zorCollide::Trimesh({zor::Vec3(-half, -half, 0), zor::Vec3(half, -half, 0),
                                    zor::Vec3(half, half, 0), zor::Vec3(-half, half, 0),
                                    zor::Vec3(0, 0, -height)},
                                   {0, 1, 2, 0, 2, 3, 1, 0, 4, 2, 1, 4, 3, 2, 4, 0, 3, 4});
  }
};

TEST_F(ParticleContacts, RestOnEveryShape) {
  zor::Quat const upright((std::numbers::pi / 2), zor::Vec3(1, 0, 0)); // the y axis points up
  EXPECT_NEAR(restingHeight(new zorCollide::Box(zor::Vec3(1, 1, 0.3))), 0.3, 1e-3);
  EXPECT_NEAR(restingHeight(new zorCollide::Sphere(0.4)), 0.4, 1e-3);
  EXPECT_NEAR(restingHeight(new zorCollide::Capsule(0.2, 0.6), upright), 0.5, 1e-3);
  EXPECT_NEAR(restingHeight(new zorCollide::Capsule(0.2, 0.6)), 0.2, 1e-3);
  EXPECT_NEAR(restingHeight(new zorCollide::Cylinder(0.2, 0.6), upright), 0.3, 1e-3);
  EXPECT_NEAR(restingHeight(new zorCollide::Cylinder(0.2, 0.6)), 0.2, 1e-3);
  EXPECT_NEAR(
      restingHeight(new zorCollide::Cone(0.4, 0.6), zor::Quat(-(std::numbers::pi / 2), zor::Vec3(1, 0, 0))),
      0.3, 1e-3);
  EXPECT_NEAR(restingHeight(new zorCollide::Plane(zor::Vec3(0, 0, 1), zor::Vec3(0, 0, 0.2))), 0.2, 1e-3);
  EXPECT_NEAR(restingHeight(makePyramid(1, 0.5)), 0, 1e-3);
  zor::ref_ptr<zorCollide::Trimesh> const mesh = makePyramid(1, 0.5);
  EXPECT_NEAR(restingHeight(new zorCollide::Convex(mesh->getVertices())), 0, 1e-3);
  EXPECT_NEAR(restingHeight(new zorCollide::HeightField(3, 3, 2, 2, zor::RealVector(9, 0.25))), 0.25, 1e-3);
  zor::ref_ptr<zorCollide::Compound> const compound = new zorCollide::Compound;
  compound->add(new zorCollide::Box(zor::Vec3(1, 1, 0.1)),
                zor::AffineMatrix4x4::translate(zor::Vec3(0, 0, 0.2)));
  EXPECT_NEAR(restingHeight(compound.get()), 0.3, 1e-3);
}

TEST_F(ParticleContacts, RollAcrossFlatTrianglesAsOnAPlane) {
  zor::Vec3Vector vertices;
  zor::UInt32Vector indices;
  constexpr zor::UInt32 N = 20;
  for (zor::UInt32 i = 0; i <= N; ++i)
    for (zor::UInt32 k = 0; k <= N; ++k)
      vertices.push_back(zor::Vec3(i * 0.1, k * 0.1 - 1, 0));
  for (zor::UInt32 i = 0; i < N; ++i)
    for (zor::UInt32 k = 0; k < N; ++k) {
      zor::UInt32 const at = i * (N + 1) + k;
      for (zor::UInt32 const corner : {at, at + N + 1, at + N + 2, at, at + N + 2, at + 1})
        indices.push_back(corner);
    }
  addFixed(new zorCollide::Trimesh(vertices, indices));
  particles->addParticle(zor::Vec3(0.1, 0.013, R), R, zor::Vec3(1, 0.1, 0));
  particles->setAngularVelocity(0, zor::Vec3(-0.1 / R, 1 / R, 0));
  run(1.5);
  EXPECT_NEAR(particles->getVelocity(0).x(), 1, 1e-3);
  EXPECT_NEAR(particles->getVelocity(0).y(), 0.1, 1e-3);
  EXPECT_NEAR(particles->getPosition(0).z(), R, 1e-3);
}

TEST_F(ParticleContacts, FastParticlesDoNotPassThinWalls) {
  simulation->setUniformGravity(zor::Vec3());
  addFixed(
      new zorCollide::Trimesh({zor::Vec3(0, -1, -1), zor::Vec3(0, 1, -1), zor::Vec3(0, 0, 1)}, {0, 1, 2}));
  for (double const speed : {3.0, 30.0, 300.0})
    for (int const side : {-1, 1}) {
      particles->clear();
      particles->addParticle(zor::Vec3(side * 1.03, 0, 0), R, zor::Vec3(-side * speed, 0, 0));
      run(1);
      EXPECT_GT(side * particles->getPosition(0).x(), 0.9 * R) << speed;
    }
}

TEST_F(ParticleContacts, BodiesGetTheReaction) {
  simulation->setUniformGravity(zor::Vec3());
  particles->setMaterial(makeMaterial(0.5, 0.5).get());
  zor::ref_ptr<zor::RigidBody> const box = addBox(zor::Vec3(0.2, 0.2, 0.2), zor::Vec3(1, 0, 0));
  particles->addParticle(zor::Vec3(0, 0.1, 0), R, zor::Vec3(10, 1, 0));
  double const mass = box->getMassProperties()->getMass();
  zor::Vec3 const before = particles->getMomentum();
  run(0.5);
  zor::Vec3 const after = particles->getMomentum() + box->getVelocity() * mass;
  EXPECT_TRUE(after.equals(before, 1e-5 * before.length())) << after;
  EXPECT_GT(box->getVelocity().x(), 0);
  EXPECT_LT(box->getAngularVelocity().z(), -1e-3); // struck beside its middle
  // Both about the origin: what the particle loses the box gains.
  zor::Vec3 const spin = particles->getPosition(0).cross(particles->getMomentum()) +
                         particles->getAngularVelocity(0) * (0.4 * particles->getMass(0) * R * R) +
                         box->getCmPosition().cross(box->getVelocity() * mass) +
                         box->getAngularVelocity() * box->getMassProperties()->getPrincipalInertiae().z();
  EXPECT_NEAR(spin.z(), -0.1 * before.x(), 0.02 * 0.1 * before.x());
}

TEST_F(ParticleContacts, LightPlateCarriesAHeap) {
  addGround();
  zor::ref_ptr<zor::RigidBody> const plate = addBox(zor::Vec3(0.5, 0.5, 0.02), zor::Vec3(0, 0, 0.02));
  plate->getMassProperties()->setMass(1);
  for (int i = 0; i < 200; ++i) // 100 kg
    particles->addParticle(zor::Vec3(-0.3 + 0.11 * (i % 6), -0.3 + 0.11 * (i / 6 % 6), 0.1 + 0.11 * (i / 36)),
                           R);
  run(4);
  EXPECT_NEAR(plate->getPosition().z(), 0.02, 0.005);
  for (size_t i = 0; i < particles->getNumParticles(); ++i)
    ASSERT_GT(particles->getPosition(i).z(), 0.8 * R) << i;
}

TEST_F(ParticleContacts, BodyFloatsOnParticles) {
  addContainer(0.5, 5);
  addBlock(800, R, 0.5);
  run(1);
  zor::Vec3 lower, upper;
  particles->getBounds(lower, upper);
  zor::ref_ptr<zor::RigidBody> const box =
      addBox(zor::Vec3(0.2, 0.2, 0.1), zor::Vec3(0, 0, upper.z() + 0.12));
  box->getMassProperties()->setMass(8);
  run(3);
  EXPECT_GT(box->getPosition().z(), upper.z() - 0.1);
  EXPECT_LT(box->getVelocity().length(), 0.05);
  double carried = 0;
  zor::ParticleContacts const contacts = particles->getContacts();
  for (size_t i = 0; i < contacts.getNumContacts(); ++i)
    if (contacts.geometries[i] && contacts.geometries[i]->getRigidBody() == box)
      carried -= contacts.normalForces[i] * contacts.normals[i].z() + contacts.frictionForces[i].z();
  EXPECT_NEAR(carried, 8 * G, 0.15 * 8 * G);
}

TEST_F(ParticleContacts, MovingGeometriesTakeParticlesAlong) {
  zor::ref_ptr<zor::RigidBody> const belt = addBox(zor::Vec3(5, 5, 0.1), zor::Vec3(0, 0, -0.1));
  belt->setMotionControl(zor::RigidBody::KINEMATICS);
  belt->setVelocity(zor::Vec3(0.5, 0, 0));
  particles->setRollingResistance(0.5);
  particles->addParticle(zor::Vec3(0, 0, R), R);
  run(2);
  EXPECT_NEAR(particles->getVelocity(0).x(), 0.5, 0.01);
}

TEST_F(ParticleContacts, FiltersAndSensors) {
  zor::ref_ptr<zorCollide::Geometry> const ground = addGround();
  zor::ref_ptr<zorCollide::Geometry> const sensor =
      addFixed(new zorCollide::Box(zor::Vec3(1, 1, 0.2)), zor::Vec3(0, 0, 0.3));
  sensor->setSensor(true);
  auto const falls = [&] {
    particles->clear();
    particles->addParticle(zor::Vec3(0, 0, 0.3), R);
    run(1);
    return particles->getPosition(0).z() < -1;
  };
  particles->addParticle(zor::Vec3(0, 0, 0.3), R);
  simulation->stepForward();
  zor::ParticleContacts const contacts = particles->getContacts();
  ASSERT_EQ(contacts.getNumContacts(), 1u);
  EXPECT_EQ(contacts.getGeometry(0), sensor.get());
  EXPECT_EQ(contacts.normalForces[0], 0);
  EXPECT_FALSE(falls());
  ground->setEnableCollisions(false);
  EXPECT_TRUE(falls());
  ground->setEnableCollisions(true);
  ground->addGroup(1);
  particles->addGroup(2);
  simulation->getSpace()->setEnablePair(1, 2, false);
  EXPECT_TRUE(falls());
  simulation->getSpace()->setEnablePair(1, 2, true);
  EXPECT_FALSE(falls());
  ground->setEnable(false);
  EXPECT_TRUE(falls());
}

} // namespace
