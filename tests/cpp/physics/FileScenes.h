#pragma once

#include <cmath>
#include <functional>
#include <random>
#include <string>

#include <zor/BallJoint.h>
#include <zor/CylindricalJoint.h>
#include <zor/DistanceJoint.h>
#include <zor/GearJoint.h>
#include <zor/Hinge.h>
#include <zor/LockJoint.h>
#include <zor/Prismatic.h>
#include <zor/UniversalJoint.h>
#include <zor/WheelJoint.h>
#include <zorCollide/HeightField.h>

#include "CollideSamples.h"
#include "PhysicsFixture.h"

/** Scenes that use much of the engine, the same each time they are made. */
namespace scenes {

using zor::AffineMatrix4x4;
using zor::Quat;
using zor::ref_ptr;
using zor::RigidBody;
using zor::Vec3;
using zorCollide::Geometry;
using zorSDK::Simulation;

inline ref_ptr<RigidBody> add(Simulation& simulation, zorCollide::Shape* shape, Vec3 const& position,
                              std::string const& name = "") {
  ref_ptr<RigidBody> body = new RigidBody(new Geometry(shape), name);
  body->setPosition(position);
  simulation.add(body.get());
  return body;
}

/** Bodies of all shapes, some of several geometries, that fall on uneven ground. */
inline void pile(Simulation& simulation, unsigned seed = 1, int rounds = 4) {
  std::mt19937 random(seed);
  auto const number = [&](double low, double high) {
    return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
  };
  zor::RealVector heights;
  for (int i = 0; i < 400; ++i)
    heights.push_back(number(-0.3, 0.3));
  simulation.add(new Geometry(new zorCollide::HeightField(20, 20, 20, 20, heights)));
  simulation.add(new Geometry(new zorCollide::Plane(Vec3(0.1, 0.05, 1), Vec3(0, 0, -0.2))));
  for (int round = 0; round < rounds; ++round)
    for (samples::Solid const& solid : samples::solids()) {
      auto const body =
          add(simulation, solid.shape.get(), Vec3(number(-2, 2), number(-2, 2), number(1, 6)), solid.name);
      body->setRotation(Quat(number(0, 6), Vec3(number(-1, 1), number(-1, 1), 1)));
      if (round % 2 == 0) { // a second part makes a compound, whose centre of mass is elsewhere
        body->add(new Geometry(new zorCollide::Box(0.2, 0.2, 0.2)),
                  AffineMatrix4x4::translate(0.3, 0.9, 0.2));
        body->getGeometries()[1]->getMaterial(); // the default one
      }
      if (auto* mesh = dynamic_cast<zorCollide::Trimesh*>(solid.shape.get()))
        mesh->setNumConvexParts(3);
    }
}

/** A shaft that leans, gears, and a wheel that bounces over the ground. */
inline void drives(Simulation& simulation) {
  auto const shaft = add(simulation, new zorCollide::Cylinder(0.1, 0.6), Vec3(0, 6, 2), "shaft");
  auto const gear = add(simulation, new zorCollide::Cylinder(0.3, 0.2), Vec3(1, 6, 2), "gear");
  ref_ptr<zor::UniversalJoint> const cross =
      new zor::UniversalJoint(Vec3(0, 6, 2), Vec3(1, 0, 0), Vec3(0, 0, 1), shaft.get());
  cross->getMotor1D(zor::UniversalJoint::FIRST_AXIS)->setEnable(true);
  cross->getMotor1D(zor::UniversalJoint::FIRST_AXIS)->setSpeed(2);
  simulation.add(cross.get());
  simulation.add(new zor::Hinge(Vec3(1, 6, 2), Vec3(1, 0, 0), gear.get()));
  simulation.add(new zor::GearJoint(shaft.get(), Vec3(1, 0, 0), gear.get(), Vec3(1, 0, 0), -0.4));
  auto const frame = add(simulation, new zorCollide::Box(0.3, 0.1, 0.1), Vec3(3, 6, 0.9), "frame");
  auto const wheel = add(simulation, new zorCollide::Cylinder(0.3, 0.1), Vec3(3, 6, 0.4), "wheel");
  ref_ptr<zor::WheelJoint> const joint =
      new zor::WheelJoint(Vec3(3, 6, 0.4), Vec3(0, 1, 0), Vec3(0, 0, 1), wheel.get(), frame.get());
  joint->setSuspension(3000, 100, zor::RangeReal(-0.05, 0.08));
  joint->setSteeringAngle(0.2);
  joint->getMotor1D(zor::WheelJoint::SPIN)->setEnable(true);
  joint->getMotor1D(zor::WheelJoint::SPIN)->setSpeed(5);
  simulation.add(joint.get());
  simulation.setSolverTolerance(1e-7);
}

/** A trestle of every kind of constraint, with controllers. */
inline void machine(Simulation& simulation) {
  simulation.add(new Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3())));
  ref_ptr<RigidBody> previous;
  for (int i = 0; i < 12; ++i) {
    auto const link = add(simulation, new zorCollide::Capsule(0.1, 0.5), Vec3(0.6 * i, 0, 4), "link");
    link->setRotation(Quat(zor::PI / 2, Vec3(0, 0, 1)));
    Vec3 const joint(0.6 * i - 0.3, 0, 4);
    if (i % 3 == 1) {
      simulation.add(new zor::BallJoint(joint, link.get(), previous.get()));
    } else {
      ref_ptr<zor::Hinge> const hinge = new zor::Hinge(joint, Vec3(0, 1, 0), link.get(), previous.get());
      hinge->setName("hinge" + std::to_string(i));
      hinge->getMotor1D()->setEnable(i % 3 == 0);
      hinge->getMotor1D()->setSpeed(0.7 * i);
      hinge->getMotor1D()->setForceRange(zor::RangeReal(-3, 5));
      hinge->getRange1D()->setRange(-0.4, 0.9);
      hinge->getRange1D()->setEnable(i % 4 == 2);
      hinge->setEnableCollisions(i % 5 == 3);
      simulation.add(hinge.get());
    }
    previous = link;
  }
  auto const slider = add(simulation, new zorCollide::Box(0.2, 0.2, 0.2), Vec3(0, 3, 2), "slider");
  ref_ptr<zor::Prismatic> const prismatic = new zor::Prismatic(Vec3(0, 3, 2), Vec3(0, 0, 1), slider.get());
  prismatic->getLock1D()->setEnable(true);
  prismatic->getLock1D()->setCompliance(1e-3);
  simulation.add(prismatic.get());
  auto const bob = add(simulation, new zorCollide::Sphere(0.2), Vec3(1, 3, 1.2), "bob");
  simulation.add(new zor::DistanceJoint(bob.get(), Vec3(), slider.get(), Vec3()));
  auto const nut = add(simulation, new zorCollide::Box(0.2, 0.2, 0.2), Vec3(3, 3, 2), "nut");
  ref_ptr<zor::CylindricalJoint> const screw =
      new zor::CylindricalJoint(Vec3(3, 3, 2), Vec3(1, 0, 0), nut.get());
  screw->getMotor1D(zor::CylindricalJoint::ROTATIONAL)->setEnable(true);
  screw->getMotor1D(zor::CylindricalJoint::ROTATIONAL)->setSpeed(20);
  simulation.add(screw.get());
  auto const rider = add(simulation, new zorCollide::Box(0.1, 0.1, 0.1), Vec3(3, 3.5, 2), "rider");
  ref_ptr<zor::LockJoint> const lock = new zor::LockJoint(rider.get(), nut.get());
  lock->setCompliance(1e-4);
  simulation.add(lock.get());
  drives(simulation);
}

/** What stands still, is moved, sleeps, feels, passes through, and flies fast. */
inline void odds(Simulation& simulation) {
  simulation.setEnableAutoSleep(true);
  simulation.add(new Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3())));
  for (int i = 0; i < 5; ++i)
    add(simulation, new zorCollide::Box(0.5, 0.5, 0.1), Vec3(-4, 0, 0.1 + 0.2 * i), "resting");
  auto const table = add(simulation, new zorCollide::Box(2, 2, 0.1), Vec3(0, 0, 1), "table");
  table->setMotionControl(RigidBody::KINEMATICS);
  table->setAngularVelocity(Vec3(0, 0, 0.8));
  for (int i = 0; i < 6; ++i)
    add(simulation, new zorCollide::Cylinder(0.2, 0.4), Vec3(0.5 * i - 1.2, 0.3 * i - 0.5, 1.6), "passenger");
  auto const mesh =
      add(simulation, new zorCollide::Trimesh(samples::boxVertices(Vec3(1, 1, 0.5)), samples::boxIndices()),
          Vec3(4, 0, 0.5), "block");
  mesh->setMotionControl(RigidBody::STATIC);
  add(simulation, new zorCollide::Sphere(0.3), Vec3(4.1, 0.1, 2), "ball");
  add(simulation, new zorCollide::Box(0.3, 0.2, 0.1), Vec3(3.5, 0.3, 2), "brick");
  ref_ptr<Geometry> const gate = new Geometry(new zorCollide::Box(1, 1, 1));
  gate->setSensor(true);
  gate->setPosition(Vec3(4, 0, 2));
  simulation.add(gate.get());
  auto const walker = add(simulation, new zorCollide::Sphere(0.2), Vec3(-2, -2, 0.5), "walker");
  ref_ptr<Geometry> const feeler = new Geometry(new zorCollide::Sphere(0.8));
  feeler->setSensor(true);
  walker->add(feeler.get(), AffineMatrix4x4::translate(0.3, 0, 0));
  walker->setVelocity(Vec3(2, 1, 0));
  for (int i = 0; i < 3; ++i) {
    auto const bullet =
        add(simulation, new zorCollide::Sphere(0.05), Vec3(-20, 0.1 * i, 0.3 + 0.3 * i), "bullet");
    bullet->setEnableContinuousCollision(true);
    bullet->setVelocity(Vec3(120, 0, 0));
  }
  auto const ghost = add(simulation, new zorCollide::Box(0.3, 0.3, 0.3), Vec3(0, 0, 4), "ghost");
  ghost->getGeometries()[0]->addGroup(7);
  table->getGeometries()[0]->addGroup(8);
  simulation.getSpace()->setEnablePair(7, 8, false);
  simulation.setNumSubSteps(2);
  auto const lift = add(simulation, new zorCollide::Box(0.5, 0.5, 0.1), Vec3(8, 0, 0.2), "lift");
  lift->setMotionControl(RigidBody::KINEMATICS);
  lift->moveTo(AffineMatrix4x4(Quat(2, Vec3(0, 0, 1)), Vec3(8, 1, 2)), 7.7);
  ref_ptr<zor::Material> const felt = new zor::Material("felt"), spring = new zor::Material("spring");
  felt->setRollingFriction(0.01);
  felt->setRestitution(0.7);
  ref_ptr<zor::ContactMaterial> const soft = new zor::ContactMaterial(spring.get(), felt.get());
  soft->setStiffness(2000);
  soft->setDamping(30);
  soft->setSpinningFriction(0.02);
  simulation.add(soft.get());
  lift->getGeometries()[0]->setMaterial(spring.get());
  for (int i = 0; i < 3; ++i) {
    auto const ball =
        add(simulation, new zorCollide::Sphere(0.15), Vec3(7.8 + 0.2 * i, 0, 1 + i), "felt ball");
    ball->getGeometries()[0]->setMaterial(felt.get());
  }
}

inline zor::RealVector state(Simulation const& simulation) {
  zor::RealVector numbers;
  for (auto const& body : simulation.getRigidBodies()) {
    AffineMatrix4x4 const frame = body->getTransform();
    for (std::size_t i = 0; i < 12; ++i)
      numbers.push_back(frame(i / 3, i % 3));
    for (Vec3 const& v : {body->getVelocity(), body->getAngularVelocity(), body->getAcceleration()})
      for (std::size_t i = 0; i < 3; ++i)
        numbers.push_back(v[i]);
    numbers.push_back(body->isSleeping() ? 1 : 0);
  }
  return numbers;
}

/** What a script does to a simulation while it runs, by which things leave their first order. */
inline void disturb(Simulation& simulation, int step) {
  auto const& bodies = simulation.getRigidBodies();
  if (step % 37 == 5 && bodies.size() > 4) { // leaves and comes back at the end
    ref_ptr<RigidBody> const body = bodies[static_cast<std::size_t>(step) % bodies.size()];
    simulation.remove(body.get());
    simulation.add(body.get());
  }
  if (step % 90 == 40 && bodies.size() > 8)
    simulation.remove(bodies[3].get());
  if (step % 50 == 20)
    add(simulation, new zorCollide::Box(0.2, 0.3, 0.2), Vec3(0.1, 0.2, 5), "late");
  if (step % 61 == 30)
    bodies[bodies.size() / 2]->addForce(Vec3(20, -30, 200));
  if (step % 80 == 60)
    bodies[0]->getGeometries()[0]->addGroup(static_cast<zor::UInt32>(step));
  for (auto const& constraint : simulation.getConstraints())
    if (step % 70 == 33 && constraint->getName() == "hinge3")
      constraint->setEnable(step % 140 == 33);
}

inline void advance(Simulation& simulation, int from, int to) {
  for (int step = from; step < to; ++step) {
    disturb(simulation, step);
    simulation.stepForward();
  }
}

} // namespace scenes
