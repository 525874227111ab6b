#pragma once

#include <cmath>
#include <vector>

#include <zor/ParticleSystem.h>

#include "PhysicsFixture.h"

/** A simulation with a particle system. */
class ParticleFixture : public PhysicsFixture {
protected:
  ParticleFixture() { simulation->add(particles.get()); }

  zor::ref_ptr<zorCollide::Geometry> addFixed(zorCollide::Shape* shape,
                                              zor::Vec3 const& position = zor::Vec3(),
                                              zor::Quat const& rotation = zor::Quat()) {
    zor::ref_ptr<zorCollide::Geometry> geometry = new zorCollide::Geometry(shape);
    geometry->setTransform(zor::AffineMatrix4x4(rotation, position));
    simulation->add(geometry.get());
    return geometry;
  }

  /** Four walls and a floor; the inside is a square from -half to half. */
  void addContainer(double half, double height) {
    zor::Vec3 const floor(half + 1, half + 1, 0.5);
    addFixed(new zorCollide::Box(floor), zor::Vec3(0, 0, -0.5));
    for (int const side : {-1, 1}) {
      addFixed(new zorCollide::Box(zor::Vec3(0.5, half + 1, height)),
               zor::Vec3(side * (half + 0.5), 0, height - 1));
      addFixed(new zorCollide::Box(zor::Vec3(half + 1, 0.5, height)),
               zor::Vec3(0, side * (half + 0.5), height - 1));
    }
  }

  /** A loose block on a lattice, a little out of line. */
  void addBlock(size_t count, double radius, double half) {
    auto const across = static_cast<size_t>(2 * half / (2.2 * radius));
    zor::Vec3Vector positions;
    for (size_t i = 0; i < count; ++i) {
      auto const place = [&](size_t at, size_t phase) {
        return -half + radius * (1.1 + 2.2 * static_cast<double>(at)) +
               0.05 * radius * std::sin(static_cast<double>(phase));
      };
      positions.push_back(zor::Vec3(place(i % across, i), place(i / across % across, 3 * i),
                                    radius * (1.2 + 2.2 * static_cast<double>(i / across / across))));
    }
    particles->addParticles(positions, radius);
  }

  /** Every number that a step changes. */
  std::vector<double> state() const {
    std::vector<double> numbers;
    for (size_t i = 0; i < particles->getNumParticles(); ++i) {
      zor::Quat const turn = particles->getRotation(i);
      for (zor::Vec3 const& v :
           {particles->getPosition(i), particles->getVelocity(i), particles->getAngularVelocity(i)})
        numbers.insert(numbers.end(), {v[0], v[1], v[2]});
      numbers.insert(numbers.end(), {turn.x(), turn.y(), turn.z(), turn.w()});
    }
    return numbers;
  }

  zor::ref_ptr<zor::Material> makeMaterial(double friction, double restitution) {
    zor::ref_ptr<zor::Material> material = new zor::Material("", 1000, friction);
    material->setRestitution(restitution);
    return material;
  }

  zor::ref_ptr<zor::ParticleSystem> particles = new zor::ParticleSystem("particles");
};
