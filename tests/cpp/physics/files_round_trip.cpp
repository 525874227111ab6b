#include <cstring>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include <zor/ContactMaterial.h>
#include <zor/Notify.h>
#include <zor/ObserverFrame.h>
#include <zorRender/RenderData.h>
#include <zorRender/RenderMaterial.h>
#include <zorSDK/Assembly.h>
#include <zorSDK/StepEventListener.h>

#include "FileScenes.h"

using zor::AffineMatrix4x4;
using zor::ref_ptr;
using zor::Vec3;
using zorCollide::Geometry;
using zorSDK::Simulation;

// Everything that can be in a simulation comes back from both kinds of files.

namespace {

class RoundTrip : public PhysicsFixture, public testing::WithParamInterface<bool> {
protected:
  ref_ptr<Simulation> again() {
    ref_ptr<Simulation> other = new Simulation;
    other->fromBytes(simulation->toBytes(GetParam()));
    EXPECT_TRUE(other->toBytes() == simulation->toBytes());
    return other;
  }
};

INSTANTIATE_TEST_SUITE_P(Files, RoundTrip, testing::Bool(),
                         [](auto const& each) { return each.param ? "Json" : "Binary"; });

TEST_P(RoundTrip, ShapesStayShapesAndSharedOnesShared) {
  ref_ptr<zorRender::RenderData> const drawn = new zorRender::RenderData;
  drawn->setVertices({Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0)});
  drawn->setNormals({Vec3(0, 0, 1), Vec3(0, 0, 1), Vec3(0, 0, 1)});
  drawn->setTexCoords({zor::Vec2(0, 0), zor::Vec2(1, 0), zor::Vec2(0, 0.1)});
  drawn->setIndices({0, 1, 2});
  ref_ptr<zorRender::RenderMaterial> const look = new zorRender::RenderMaterial;
  look->setDiffuseColor(zorRender::Color(0.8f, 0.1f, 1.0f / 3.0f, 0.5f));
  look->setShininess(12.3f);
  look->setDiffuseTexture("wood.png");
  drawn->setRenderMaterial(look.get());
  std::vector<samples::Solid> const solids = samples::solids();
  for (samples::Solid const& solid : solids) {
    solid.shape->setName("shape of " + solid.name);
    solid.shape->setRenderData(drawn.get());
    ref_ptr<Geometry> const geometry = new Geometry(solid.shape.get());
    geometry->add(solid.shape.get(), AffineMatrix4x4(zor::Quat(0.3, Vec3(1, 2, 3)), Vec3(0.1, 0.2, 0.3)));
    geometry->setName(solid.name);
    simulation->add(geometry.get());
  }
  zor::RealVector const heights{0, 0.1, -1e-300, 0.3, 1.0 / 3.0, 5};
  simulation->add(new Geometry(new zorCollide::HeightField(3, 2, 2.5, 1.5, heights)));
  simulation->add(new Geometry(new zorCollide::Plane(Vec3(0.3, -0.2, 0.7), Vec3(1, 2, 3))));

  auto const other = again();
  ref_ptr<zorRender::RenderData> commonData = other->getGeometries()[0]->getShape(0)->getRenderData();
  ASSERT_TRUE(commonData);
  EXPECT_EQ(commonData->getTexCoords()[2], zor::Vec2(0, 0.1));
  EXPECT_EQ(commonData->getRenderMaterial()->getDiffuseColor(), look->getDiffuseColor());
  EXPECT_EQ(commonData->getRenderMaterial()->getDiffuseTexture(), "wood.png");
  EXPECT_FALSE(commonData->getRenderMaterial()->hasAmbientColor());
  for (std::size_t i = 0; i < solids.size(); ++i) {
    Geometry const& geometry = *other->getGeometries()[i];
    zorCollide::Shape const& shape = *geometry.getShape(0);
    EXPECT_EQ(geometry.getShape(1), &shape) << "one shape, twice";
    EXPECT_EQ(shape.getType(), solids[i].shape->getType());
    EXPECT_EQ(shape.getName(), solids[i].shape->getName());
    EXPECT_EQ(shape.getVolume(), solids[i].shape->getVolume());
    EXPECT_EQ(shape.getRenderData(), commonData.get());
    EXPECT_EQ(geometry.getShapeTransform(1), simulation->getGeometries()[i]->getShapeTransform(1));
  }
  auto const& field =
      dynamic_cast<zorCollide::HeightField&>(*other->getGeometries()[solids.size()]->getShape(0));
  EXPECT_TRUE(std::equal(heights.begin(), heights.end(), field.getHeights().begin()));
}

TEST_P(RoundTrip, BodiesMaterialsAndSettings) {
  ref_ptr<zor::Material> const ice = new zor::Material("ice", 917, 0.05);
  ice->setRestitution(0.25);
  ref_ptr<zor::Material> const steel = new zor::Material("steel", 7800, 0.4);
  ref_ptr<zor::ContactMaterial> const pair = new zor::ContactMaterial(ice.get(), steel.get());
  pair->setFriction(0.01);
  simulation->add(ice.get());
  simulation->add(pair.get());
  auto const puck = addBox(Vec3(0.2, 0.3, 0.4), Vec3(0, 0, 3), "puck \"\\ \xc3\xa4");
  puck->getGeometries()[0]->setMaterial(steel.get());
  puck->updateMassProperties();
  puck->getMassProperties()->setCmLocalTranslate(Vec3(0.01, 0.02, 0.03));
  puck->setLinearVelocityDamping(0.3);
  puck->setVelocity(Vec3(1, 2, 3));
  puck->addForce(Vec3(5, 0, 0));
  auto const ground = addGround();
  ground->setMaterial(ice.get());
  ground->setEnableCollisions(puck->getGeometries()[0].get(), false);
  ground->addGroup(5);
  auto const off = addSphere(0.5, Vec3(9, 9, 9));
  off->setEnable(false);
  ref_ptr<zor::ObserverFrame> const eye =
      new zor::ObserverFrame(puck.get(), AffineMatrix4x4::translate(0.1, 0.2, 0.3), "eye");
  simulation->add(eye.get());
  simulation->getSpace()->setEnablePair(5, 6, false);
  simulation->setUniformGravity(Vec3(0.1, 0, -3.7));
  simulation->setTimeStep(0.004);
  simulation->setName("rink");
  run(0.1);

  auto const other = again();
  EXPECT_EQ(other->getTimeStamp(), simulation->getTimeStamp());
  EXPECT_EQ(other->getUniformGravity(), Vec3(0.1, 0, -3.7));
  EXPECT_FALSE(other->getSpace()->getEnablePair(5, 6));
  zor::RigidBody& copy = *other->getRigidBody(puck->getName());
  EXPECT_EQ(copy.getGeometries()[0]->getMaterial()->getName(), "steel");
  EXPECT_EQ(copy.getMassProperties()->getMass(), puck->getMassProperties()->getMass());
  EXPECT_EQ(copy.getMassProperties()->getAutoGenerateMask(),
            puck->getMassProperties()->getAutoGenerateMask());
  EXPECT_EQ(copy.getAcceleration(), puck->getAcceleration());
  Geometry& floor = *other->getGeometries()[1];
  EXPECT_TRUE(floor.hasGroup(5));
  EXPECT_FALSE(floor.getEnableCollisions(copy.getGeometries()[0].get()));
  EXPECT_EQ(floor.getMaterial(), other->getMaterial("ice")) << "shared";
  zor::ContactMaterial* const met =
      other->getContactMaterial(floor.getMaterial(), copy.getGeometries()[0]->getMaterial());
  ASSERT_TRUE(met);
  EXPECT_EQ(met->getFriction(), 0.01);
  EXPECT_EQ(other->getObserverFrame("eye")->getRigidBody(), &copy);
  EXPECT_EQ(other->getObserverFrame("eye")->getTransform(), eye->getTransform());
  EXPECT_FALSE(other->getRigidBodies()[1]->getEnable());
}

TEST_P(RoundTrip, AssembliesAndFrames) {
  ref_ptr<zorSDK::Assembly> const arm = new zorSDK::Assembly("arm"), hand = new zorSDK::Assembly("hand");
  auto const upper = makeBody(new zorCollide::Box(1, 1, 1), Vec3(0, 0, 5), "upper");
  auto const finger = makeBody(new zorCollide::Sphere(0.2), Vec3(0, 3, 5), "finger");
  arm->add(upper.get());
  hand->add(finger.get());
  hand->add(new zor::Hinge(Vec3(0, 1, 5), Vec3(1, 0, 0), upper.get(), finger.get()));
  arm->add(hand.get());
  simulation->add(arm.get());
  auto const loose = addSphere(0.3, Vec3(5, 5, 5));
  ref_ptr<zor::Frame> const base = new zor::Frame(AffineMatrix4x4::translate(1, 1, 1)); // that nothing owns
  base->setParent(upper->getFrame());
  ref_ptr<zor::ObserverFrame> const tip = new zor::ObserverFrame("tip");
  tip->getFrame()->setParent(base.get());
  simulation->add(tip.get());

  auto const other = again();
  zorSDK::Assembly& copy = *other->getAssembly("arm");
  ASSERT_EQ(copy.getAssemblies().size(), 1u);
  EXPECT_EQ(copy.getAssemblies()[0]->getParent(), &copy);
  EXPECT_EQ(copy.getAssembly("hand")->getSimulation(), other.get());
  EXPECT_EQ(copy.getRigidBody("finger"), other->getRigidBodies()[1].get()) << "one body in both lists";
  EXPECT_EQ(copy.getAssembly("hand")->getConstraints()[0]->getBody(0), other->getRigidBody("upper"));
  zor::ObserverFrame& tipCopy = *other->getObserverFrame("tip");
  ASSERT_TRUE(tipCopy.getFrame()->getParent());
  EXPECT_EQ(tipCopy.getFrame()->getParent()->getParent(), other->getRigidBody("upper")->getFrame());

  ref_ptr<zorSDK::Assembly> const parent = new zorSDK::Assembly("parent");
  ref_ptr<Simulation> const third = new Simulation;
  third->fromBytes(simulation->toBytes(GetParam()), parent.get());
  EXPECT_EQ(parent->getSimulation(), third.get());
  EXPECT_EQ(parent->getRigidBodies().size(), 1u) << "the others have an assembly";
  EXPECT_EQ(third->getAssembly("arm")->getParent(), parent.get());
  EXPECT_EQ(third->getAssemblies().size(), 1u);
  third->remove(parent.get());
  EXPECT_TRUE(third->getRigidBodies().empty());
}

TEST_P(RoundTrip, SelectionTakesParts) {
  ref_ptr<zor::Material> const clay = new zor::Material("clay");
  simulation->add(clay.get());
  addSphere(1, Vec3(0, 0, 9));
  simulation->setUniformGravity(Vec3(0, 0, -1));
  run(1);
  for (zor::UInt selection = 0; selection <= Simulation::READ_ALL; ++selection) {
    ref_ptr<Simulation> const other = new Simulation;
    other->fromBytes(simulation->toBytes(GetParam()), nullptr, selection);
    EXPECT_EQ(other->getRigidBodies().size(), selection & Simulation::READ_OBJECTS ? 1u : 0u);
    EXPECT_EQ(other->getTimeStamp() > 0.5, bool(selection & Simulation::READ_TIME));
    EXPECT_EQ(other->getUniformGravity().z() == -1, bool(selection & Simulation::READ_SETTINGS));
    EXPECT_EQ(other->getMaterial("clay") != nullptr, bool(selection & Simulation::READ_MATERIALS));
  }
  EXPECT_THROW(simulation->fromBytes(simulation->toBytes(), nullptr, 16), std::invalid_argument);
}

TEST_P(RoundTrip, JoinsASimulationThatHasThings) {
  addGround();
  addBox(Vec3(1, 1, 1), Vec3(0, 0, 1), "stored");
  run(0.5);
  ref_ptr<Simulation> const other = new Simulation;
  auto const own = scenes::add(*other, new zorCollide::Sphere(0.5), Vec3(0, 0, 4), "own");
  other->setNumSubSteps(3);
  other->stepForward();
  other->fromBytes(simulation->toBytes(GetParam()), nullptr, 13);
  EXPECT_EQ(other->getRigidBodies().size(), 2u);
  other->stepTo(3);
  EXPECT_NEAR(own->getPosition().z(), 2.5, 0.01) << "it has come to rest on what was read";
  auto const bytes = other->toBytes(GetParam());
  other->fromBytes(bytes); // and once more beside itself
  EXPECT_EQ(other->getRigidBodies().size(), 4u);
  other->stepForward();
}

TEST_F(PhysicsFixture, ListenersAreCountedNotStored) {
  simulation->add(new zorSDK::StepEventListener);
  std::string text;
  int const target =
      zor::Notify::instance().addTarget([&](zor::NotifyMessage const& message) { text += message.text; });
  simulation->toBytes();
  zor::Notify::instance().removeTarget(target);
  EXPECT_THAT(text, testing::HasSubstr("1 listener is not stored"));
}

} // namespace
