#include <cstring>
#include <limits>

#include <gmock/gmock.h>

#include <zor/Emitter.h>
#include <zor/RigidBodyEmitter.h>

#include "FileScenes.h"

using testing::HasSubstr;
using zor::ref_ptr;
using zor::Vec3;
using zorCollide::Geometry;
using zorSDK::Simulation;

// Particles and emitters come back from files, and go on bit for bit.

namespace {

ref_ptr<Geometry> addFixed(Simulation& simulation, zorCollide::Shape* shape, Vec3 const& position,
                           zor::Quat const& rotation = zor::Quat()) {
  ref_ptr<Geometry> geometry = new Geometry(shape);
  geometry->setTransform(zor::AffineMatrix4x4(rotation, position));
  simulation.add(geometry.get());
  return geometry;
}

ref_ptr<zor::Material> material(char const* name, double friction, double restitution) {
  ref_ptr<zor::Material> made = new zor::Material(name, 1500, friction);
  made->setRestitution(restitution);
  return made;
}

// Grains and stones fall into a hopper, onto a stirrer, a float and a plate on a spring, and run out.
void hopper(Simulation& simulation) {
  for (int i = 0; i < 4; ++i) {
    zor::Quat const turn(i * zor::PI / 2, Vec3(0, 0, 1));
    addFixed(simulation, new zorCollide::Box(0.05, 0.7, 0.6), turn * Vec3(0.5, 0, 1.2),
             turn * zor::Quat(i < 3 ? 0.5 : 0.6, Vec3(0, 1, 0)));
  }
  addFixed(simulation, new zorCollide::Plane(Vec3(0, 0, 1), Vec3(0, 0, -0.4)), Vec3());
  ref_ptr<Geometry> const eye = addFixed(simulation, new zorCollide::Box(0.4, 0.4, 0.1), Vec3(0, 0, 0.9));
  eye->setSensor(true);
  auto const stirrer =
      scenes::add(simulation, new zorCollide::Capsule(0.04, 0.3), Vec3(0, 0, 1.1), "stirrer");
  stirrer->setMotionControl(zor::RigidBody::KINEMATICS);
  stirrer->setAngularVelocity(Vec3(0, 0, 2));
  scenes::add(simulation, new zorCollide::Box(0.1, 0.1, 0.05), Vec3(0.05, 0.02, 1.9), "float");
  auto const plate = scenes::add(simulation, new zorCollide::Box(0.3, 0.3, 0.02), Vec3(0, 0, 0.2), "plate");
  ref_ptr<zor::LockJoint> const spring = new zor::LockJoint(plate.get());
  spring->setCompliance(1e-4);
  simulation.add(spring.get());

  auto const sand = material("sand", 0.5, 0), glass = material("glass", 0.3, 0.6);
  ref_ptr<zor::ParticleSystem> const grains = new zor::ParticleSystem("grains");
  grains->setMaterial(sand.get());
  grains->setRollingResistance(0.1);
  grains->addGroup(4);
  zor::Vec3Vector places;
  for (int i = 0; i < 2000; ++i)
    places.push_back(Vec3(0.05 * (i % 10) - 0.23 + 1e-3 * std::sin(i), 0.05 * (i / 10 % 10) - 0.23,
                          1.2 + 0.05 * (i / 100)));
  grains->addParticles(places, 0.02);
  for (zor::UInt i = 0; i < 2000; i += 3) {
    grains->setParticleMaterial(i, glass.get());
    grains->setLifetime(i, 2.5 + 0.003 * static_cast<double>(i)); // some go while others are added
  }
  simulation.add(grains.get());

  ref_ptr<zor::ParticleDistribution> const mix = new zor::ParticleDistribution;
  mix->add(new zor::ParticleModel(zor::RandomReal::normal(0.02, 0.005, 0.015, 0.03)), 2);
  mix->add(new zor::ParticleModel(zor::RandomReal::logNormal(0.025, 0.004, 0.01, 0.04), glass.get(),
                                  zor::Vec4f(0.2f, 0.4f, 0.9f, 1), zor::RandomReal::uniform(2, 6)));
  mix->setQuantity(zor::Distribution::MASS);
  auto const spout = scenes::add(simulation, new zorCollide::Sphere(0.05), Vec3(0, 0.1, 3.2), "spout");
  spout->setMotionControl(zor::RigidBody::KINEMATICS);
  spout->setVelocity(Vec3(0.01, 0, 0));
  ref_ptr<Geometry> const mouth = new Geometry(new zorCollide::Cylinder(0.15, 0.2));
  mouth->setSensor(true);
  spout->add(mouth.get());
  ref_ptr<zor::Emitter> const pour = new zor::Emitter(grains.get(), mix.get(), mouth.get(), 3.7);
  pour->setQuantity(zor::Distribution::MASS);
  pour->setVelocity(Vec3(0, 0, -1));
  pour->setSeed(77);
  simulation.add(pour.get());

  ref_ptr<zor::RigidBodyDistribution> const stones = new zor::RigidBodyDistribution;
  ref_ptr<zor::RigidBody> const pebble = new zor::RigidBody(new Geometry(new zorCollide::Sphere(0.05)));
  ref_ptr<zor::RigidBody> const brick =
      new zor::RigidBody(new Geometry(new zorCollide::Box(0.06, 0.04, 0.03)));
  brick->getMassProperties()->setMass(1.25);
  stones->add(pebble.get(), 1);
  stones->add(brick.get(), 0.5);
  ref_ptr<Geometry> const chute = new Geometry(new zorCollide::Box(0.2, 0.2, 0.2)); // in no simulation
  chute->setPosition(Vec3(0, 0, 2.7));
  ref_ptr<zor::RigidBodyEmitter> const drop = new zor::RigidBodyEmitter(stones.get(), chute.get(), 1.9);
  drop->setMaximumEmitted(14);
  drop->setName("stones");
  simulation.add(drop.get());
}

void advance(Simulation& simulation, int steps) {
  for (int i = 0; i < steps; ++i)
    simulation.stepForward();
}

ref_ptr<Simulation> copyOf(Simulation const& simulation, bool json, zor::UInt threads = 2) {
  ref_ptr<Simulation> other = new Simulation;
  other->fromBytes(simulation.toBytes(json));
  for (auto const& system : other->getParticleSystems())
    system->setNumThreads(threads);
  return other;
}

bool sameBits(Simulation const& a, Simulation const& b) {
  zor::RealVector const first = a.getState(), second = b.getState();
  return first.size() == second.size() &&
         std::memcmp(first.data(), second.data(), first.size() * sizeof(double)) == 0;
}

bool sameContacts(Simulation const& a, Simulation const& b) {
  auto const first = a.getParticleSystem()->getContacts(), second = b.getParticleSystem()->getContacts();
  return first.getNumContacts() > 0 && first.getParticles1() == second.getParticles1() &&
         first.getParticles2() == second.getParticles2() && first.getPoints() == second.getPoints() &&
         first.getNormals() == second.getNormals() && first.getDepths() == second.getDepths() &&
         first.getNormalForces() == second.getNormalForces() &&
         first.getFrictionForces() == second.getFrictionForces();
}

TEST(ParticleFiles, AHopperGoesOnBitForBit) {
  ref_ptr<Simulation> const original = new Simulation;
  hopper(*original);
  advance(*original, 60); // grains and stones are still piled up
  ref_ptr<Simulation> const early = copyOf(*original, false, 1);
  advance(*early, 140);
  advance(*original, 140);
  EXPECT_TRUE(sameBits(*original, *early));
  zor::ParticleSystem& grains = *original->getParticleSystem();
  ASSERT_GT(grains.getNumParticles(), 2000u);
  ASSERT_GT(original->getEmitter("stones")->getNumEmitted(), 3u);
  std::string const bytes = original->toBytes();
  ref_ptr<Simulation> const binary = copyOf(*original, false, 1), json = copyOf(*original, true, 2);
  EXPECT_TRUE(sameContacts(*original, *binary) && sameContacts(*original, *json));
  EXPECT_TRUE(json->toBytes() == bytes) << "numbers read back exactly";
  EXPECT_TRUE(original->toBytes() == bytes) << "writing changes nothing";
  ref_ptr<Simulation> second;
  zor::UInt const before = grains.getNumParticles();
  for (int step = 0; step < 300; step += 25) {
    if (step == 100)
      second = copyOf(*json, false, 1);
    for (Simulation* const each : {original.get(), binary.get(), json.get(), second.get()})
      if (each)
        advance(*each, 25);
    ASSERT_TRUE(sameBits(*original, *binary)) << "after step " << step;
    ASSERT_TRUE(sameBits(*original, *json)) << "after step " << step;
    ASSERT_TRUE(!second || sameBits(*original, *second)) << "after step " << step;
    ASSERT_EQ(original->getStateHash(), json->getStateHash());
  }
  EXPECT_GT(grains.getParticleId(grains.getNumParticles() - 1), before) << "emitted meanwhile";
  EXPECT_LT(grains.getNumParticles(), grains.getParticleId(grains.getNumParticles() - 1)) << "and some gone";
  second->getParticleSystem()->setNumThreads(grains.getNumThreads());
  EXPECT_TRUE(original->toBytes() == second->toBytes()) << "also in what the engines remember";
}

// Between two steps a script takes away what the engine remembers.
TEST(ParticleFiles, WhatHasGoneMeanwhileIsForgottenAlike) {
  ref_ptr<Simulation> const original = new Simulation;
  hopper(*original);
  advance(*original, 90);
  zor::ParticleSystem& grains = *original->getParticleSystem();
  grains.removeParticles({0, 5, 6, 7, 1200, 1999});
  grains.setEnable(44, false);
  grains.addForce(50, Vec3(0, 0.2, 0));
  grains.addParticle(Vec3(0, 0, 5), 0.02);
  original->remove(original->getRigidBody("plate"));
  original->remove(original->getGeometries()[1].get());
  auto const& drop = dynamic_cast<zor::RigidBodyEmitter&>(*original->getEmitter("stones"));
  original->remove(drop.getBodies()[0].get());
  ref_ptr<Simulation> const copy = copyOf(*original, true);
  auto const& copiedDrop = dynamic_cast<zor::RigidBodyEmitter&>(*copy->getEmitter("stones"));
  EXPECT_FALSE(copiedDrop.getBodies()[0]->getSimulation()) << "as the one that was emitted and removed";
  advance(*original, 40);
  advance(*copy, 40);
  EXPECT_TRUE(sameBits(*original, *copy));
  grains.clear();
  copyOf(*original, false)->stepForward();
  grains.addParticle(Vec3(0, 0, 1.3), 0.02);
  ref_ptr<Simulation> const third = copyOf(*original, false);
  EXPECT_EQ(third->getParticleSystem()->getParticleId(0), grains.getParticleId(0))
      << "ids are not used again";
  advance(*original, 20);
  advance(*third, 20);
  EXPECT_TRUE(sameBits(*original, *third));
}

// Normal numbers come in pairs, so that at some of these steps one is left over.
TEST(ParticleFiles, RandomNumbersGoOnWhereverTheyAreCut) {
  ref_ptr<Simulation> const original = new Simulation;
  original->setUniformGravity(Vec3());
  ref_ptr<zor::ParticleSystem> const grains = new zor::ParticleSystem;
  original->add(grains.get());
  ref_ptr<zor::ParticleModel> const model =
      new zor::ParticleModel(zor::RandomReal::normal(0.02, 0.002, 0.015, 0.025));
  original->add(new zor::Emitter(grains.get(), new zor::ParticleDistribution(model.get()),
                                 new Geometry(new zorCollide::Box(1, 1, 1)), 60));
  std::vector<ref_ptr<Simulation>> copies;
  for (int cut = 0; cut < 6; ++cut) {
    copies.push_back(copyOf(*original, cut % 2 == 0));
    advance(*original, 1);
  }
  for (std::size_t cut = 0; cut < copies.size(); ++cut) {
    advance(*copies[cut], static_cast<int>(copies.size() - cut));
    EXPECT_TRUE(copies[cut]->toBytes() == original->toBytes()) << "cut after step " << cut;
  }
  EXPECT_EQ(grains->getNumParticles(), copies.size());
}

TEST(ParticleFiles, SettingsAndSharedObjectsComeBack) {
  ref_ptr<Simulation> const simulation = new Simulation;
  hopper(*simulation);
  ref_ptr<zor::Emitter> const first = dynamic_cast<zor::Emitter*>(simulation->getEmitters()[0].get());
  ref_ptr<zor::ParticleSystem> const outside = new zor::ParticleSystem("in no simulation");
  ref_ptr<zor::Emitter> const sleeping =
      new zor::Emitter(outside.get(), first->getDistribution(), first->getGeometry(), 5);
  sleeping->setEnable(false);
  sleeping->setQuantity(zor::Distribution::VOLUME);
  simulation->add(sleeping.get());
  outside->setEnable(false);
  outside->setNumSubSteps(9);
  outside->setNumThreads(3);
  advance(*simulation, 10);

  ref_ptr<Simulation> const other = copyOf(*simulation, true, 2);
  zor::ParticleSystem& grains = *other->getParticleSystem("grains");
  EXPECT_EQ(grains.getRollingResistance(), 0.1);
  EXPECT_TRUE(grains.hasGroup(4));
  EXPECT_EQ(grains.getMaterial()->getName(), "sand");
  EXPECT_EQ(grains.getParticleMaterial(3)->getName(), "glass");
  ASSERT_EQ(other->getEmitters().size(), 3u);
  auto const& pour = dynamic_cast<zor::Emitter&>(*other->getEmitters()[0]);
  auto const& drop = dynamic_cast<zor::RigidBodyEmitter&>(*other->getEmitter("stones"));
  auto const& third = dynamic_cast<zor::Emitter&>(*other->getEmitters()[2]);
  EXPECT_EQ(pour.getParticleSystem(), &grains);
  EXPECT_EQ(pour.getEmittedMass(), first->getEmittedMass());
  EXPECT_EQ(pour.getGeometry()->getRigidBody(), other->getRigidBody("spout"));
  EXPECT_EQ(pour.getDistribution(), third.getDistribution()) << "shared";
  EXPECT_EQ(pour.getDistribution()->getModel(1)->getMaterial(), grains.getParticleMaterial(3)) << "shared";
  EXPECT_EQ(pour.getDistribution()->getModel(1)->getLifetime().getUpper(), 6);
  EXPECT_FALSE(third.getEnable() || third.getParticleSystem()->getSimulation());
  EXPECT_EQ(third.getParticleSystem()->getNumSubSteps(), 9u);
  EXPECT_EQ(third.getParticleSystem()->getNumThreads(), 3u);
  EXPECT_EQ(drop.getMaximumEmitted(), 14);
  EXPECT_EQ(drop.getBodies().size(), drop.getNumEmitted());
  EXPECT_EQ(drop.getDistribution()->getModel(1)->getMassProperties()->getMass(), 1.25);
}

TEST(ParticleFiles, JoinASimulationAndHeedTheSelection) {
  ref_ptr<Simulation> const simulation = new Simulation;
  hopper(*simulation);
  advance(*simulation, 30);
  std::string const bytes = simulation->toBytes();
  ref_ptr<Simulation> const other = new Simulation;
  other->fromBytes(bytes, nullptr, Simulation::READ_ALL & ~zor::UInt(Simulation::READ_OBJECTS));
  EXPECT_TRUE(other->getParticleSystems().empty() && other->getEmitters().empty());
  ref_ptr<zorSDK::Assembly> const parent = new zorSDK::Assembly;
  other->fromBytes(bytes, parent.get());
  other->fromBytes(bytes);
  ASSERT_EQ(other->getParticleSystems().size(), 2u);
  other->stepForward();
  EXPECT_EQ(other->getEmitters().size(), 4u);
  EXPECT_GT(other->getParticleSystems()[1]->getNumContacts(), 0u);
}

// What a script writes into the arrays must not make a file that can't be read.
TEST(ParticleFiles, SpoiltParticlesAreStoredSwitchedOff) {
  for (bool const json : {false, true}) {
    ref_ptr<Simulation> const simulation = new Simulation;
    ref_ptr<zor::ParticleSystem> const particles = new zor::ParticleSystem;
    simulation->add(particles.get());
    particles->addParticles({Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(2, 0, 0)}, 0.1);
    auto* const positions = static_cast<double*>(particles->getPositions().data());
    positions[3] = std::numeric_limits<double>::quiet_NaN();
    ref_ptr<Simulation> const other = copyOf(*simulation, json);
    zor::ParticleSystem const& copy = *other->getParticleSystem();
    EXPECT_TRUE(copy.getEnable(0) && !copy.getEnable(1) && copy.getEnable(2));
    EXPECT_TRUE(std::isnan(copy.getPosition(1)[0]));
    EXPECT_TRUE(particles->getEnable(1)) << "writing changes nothing";
    simulation->stepForward();
    other->stepForward();
    EXPECT_EQ(other->getParticleSystem()->getPosition(2), particles->getPosition(2));
  }
}

} // namespace
