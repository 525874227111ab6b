#pragma once

#include <string>

#include <gtest/gtest.h>

#include <zor/RigidBody.h>
#include <zorCollide/Box.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Sphere.h>
#include <zorSDK/Simulation.h>

/** A simulation, and short ways to fill it. */
class PhysicsFixture : public testing::Test {
protected:
  static zor::ref_ptr<zor::RigidBody>
  makeBody(zorCollide::Shape* shape, zor::Vec3 const& position = zor::Vec3(), std::string const& name = "") {
    zor::ref_ptr<zorCollide::Geometry> const geometry = new zorCollide::Geometry(shape);
    zor::ref_ptr<zor::RigidBody> body = new zor::RigidBody(geometry.get(), name);
    body->setPosition(position);
    return body;
  }

  zor::ref_ptr<zor::RigidBody> addBox(zor::Vec3 const& halfExtents, zor::Vec3 const& position,
                                      std::string const& name = "") {
    zor::ref_ptr<zor::RigidBody> body = makeBody(new zorCollide::Box(halfExtents), position, name);
    simulation->add(body.get());
    return body;
  }

  zor::ref_ptr<zor::RigidBody> addSphere(double radius, zor::Vec3 const& position) {
    zor::ref_ptr<zor::RigidBody> body = makeBody(new zorCollide::Sphere(radius), position);
    simulation->add(body.get());
    return body;
  }

  zor::ref_ptr<zorCollide::Geometry> addGround() {
    zor::ref_ptr<zorCollide::Geometry> ground =
        new zorCollide::Geometry(new zorCollide::Plane(zor::Vec3(0, 0, 1), zor::Vec3()));
    simulation->add(ground.get());
    return ground;
  }

  void run(double seconds) { simulation->stepTo(simulation->getTimeStamp() + seconds); }

  zor::ref_ptr<zorSDK::Simulation> simulation = new zorSDK::Simulation;
};
