#include <zor/BallJoint.h>

#include "PhysicsFixture.h"

using zor::Vec3;
using zorSDK::Assembly;

namespace {

class Assemblies : public PhysicsFixture {
protected:
  zor::ref_ptr<Assembly> outer = new Assembly("outer");
  zor::ref_ptr<Assembly> inner = new Assembly("inner");
};

TEST_F(Assemblies, EntersAndLeavesAsOne) {
  auto const body = makeBody(new zorCollide::Sphere(0.1), Vec3(0, 0, 5), "ball");
  zor::ref_ptr<zorCollide::Geometry> const wall =
      new zorCollide::Geometry(new zorCollide::Box(Vec3(1, 1, 1)));
  zor::ref_ptr<zor::BallJoint> const joint = new zor::BallJoint(Vec3(0, 0, 5), body.get());
  joint->setName("joint");
  outer->add(inner.get());
  inner->add(joint.get()); // before its body
  outer->add(wall.get());
  inner->add(body.get());
  EXPECT_FALSE(inner->add(body.get()));
  EXPECT_EQ(outer->getRigidBody("ball"), body.get()) << "nested ones are looked through";

  EXPECT_TRUE(simulation->add(outer.get()));
  EXPECT_FALSE(simulation->add(outer.get()));
  EXPECT_EQ(simulation->getRigidBody("ball"), body.get());
  EXPECT_EQ(simulation->getConstraint("joint"), joint.get());
  EXPECT_EQ(simulation->getAssembly("inner"), inner.get());
  EXPECT_EQ(simulation->getAssemblies().size(), 1u);
  EXPECT_EQ(simulation->getGeometries().size(), 2u);
  run(0.5);
  EXPECT_NEAR(body->getPosition().z(), 5, 0.01) << "the joint holds";

  auto const late = makeBody(new zorCollide::Sphere(0.1), Vec3(3, 0, 5));
  inner->add(late.get());
  EXPECT_EQ(late->getSimulation(), simulation.get()) << "what is added later follows";
  inner->remove(late.get());
  EXPECT_EQ(late->getSimulation(), nullptr);

  EXPECT_TRUE(outer->remove(inner.get()));
  EXPECT_EQ(simulation->getRigidBodies().size(), 0u);
  EXPECT_EQ(inner->getSimulation(), nullptr);
  EXPECT_TRUE(simulation->remove(outer.get()));
  EXPECT_EQ(simulation->getGeometries().size(), 0u);
  EXPECT_EQ(body->getPosition().z() > 4, true);
}

TEST_F(Assemblies, MovesItsContents) {
  auto const body = makeBody(new zorCollide::Sphere(0.1), Vec3(2, 0, 0));
  zor::ref_ptr<zorCollide::Geometry> const wall =
      new zorCollide::Geometry(new zorCollide::Box(Vec3(1, 1, 1)));
  wall->setPosition(Vec3(0, 1, 0));
  outer->add(inner.get());
  inner->add(body.get());
  outer->add(wall.get());
  body->setVelocity(Vec3(1, 0, 0));
  outer->setPosition(Vec3(10, 0, 0));
  outer->setRotation(zor::Quat(zor::PI / 2, Vec3(0, 0, 1)));
  EXPECT_TRUE(body->getPosition().equals(Vec3(10, 2, 0), 1e-9)) << body->getPosition();
  EXPECT_TRUE(body->getVelocity().equals(Vec3(0, 1, 0), 1e-9));
  EXPECT_TRUE(wall->getPosition().equals(Vec3(9, 0, 0), 1e-9));
  EXPECT_TRUE(inner->getPosition().equals(Vec3(10, 0, 0), 1e-9));
}

TEST_F(Assemblies, RefusesLoopsAndSecondParents) {
  outer->add(inner.get());
  EXPECT_THROW(inner->add(outer.get()), std::invalid_argument);
  EXPECT_THROW(outer->add(outer.get()), std::invalid_argument);
  zor::ref_ptr<Assembly> const other = new Assembly;
  EXPECT_FALSE(other->add(inner.get()));
  EXPECT_EQ(inner->getParent(), outer.get());
  EXPECT_THROW(outer->add(static_cast<zor::RigidBody*>(nullptr)), std::invalid_argument);
  EXPECT_THROW(outer->setTransform(zor::AffineMatrix4x4::scale(Vec3(2, 2, 2))), std::invalid_argument);
  outer = nullptr;
  EXPECT_EQ(inner->getParent(), nullptr);
}

} // namespace
