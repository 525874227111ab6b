#include <zor/RigidBodyEmitter.h>

#include <cmath>
#include <numbers>

#include <zorSDK/Simulation.h>

#include "zor/Checks.h"

namespace zor {

namespace {

ref_ptr<RigidBody> copyOf(RigidBody const& model) {
  ref_ptr<RigidBody> body = new RigidBody(model.getName());
  for (auto const& geometry : model.getGeometries()) {
    ref_ptr<zorCollide::Geometry> copy = new zorCollide::Geometry;
    for (UInt i = 0; i < geometry->getNumShapes(); ++i)
      copy->add(geometry->getShape(i), geometry->getShapeTransform(i));
    copy->setName(geometry->getName());
    copy->setMaterial(geometry->getMaterial());
    copy->setSensor(geometry->isSensor());
    copy->setEnable(geometry->getEnable());
    copy->setEnableCollisions(geometry->getEnableCollisions());
    for (UInt32 const group : geometry->getGroups())
      copy->addGroup(group);
    body->add(copy.get(), geometry->getLocalTransform());
  }
  MassProperties const& mass = *model.getMassProperties();
  MassProperties& own = *body->getMassProperties();
  if (mass.getAutoGenerateMask() != own.getAutoGenerateMask()) { // values that were given
    own.setCmLocalTranslate(mass.getCmLocalTranslate());
    own.setMass(mass.getMass());
    own.setInertiaTensor(mass.getInertiaTensor());
    own.setAutoGenerateMask(mass.getAutoGenerateMask());
  }
  body->setLinearVelocityDamping(model.getLinearVelocityDamping());
  body->setAngularVelocityDamping(model.getAngularVelocityDamping());
  body->setEnableContinuousCollision(model.getEnableContinuousCollision());
  return body;
}

Quat randomRotation(RandomGenerator& generator) {
  // Evenly over all rotations: a unit vector of four dimensions.
  Real const share = generator.uniform(), a = 2 * std::numbers::pi * generator.uniform(),
             b = 2 * std::numbers::pi * generator.uniform();
  Real const r = std::sqrt(1 - share), s = std::sqrt(share);
  return Quat(r * std::sin(a), r * std::cos(a), s * std::sin(b), s * std::cos(b));
}

} // namespace

RigidBodyEmitter::RigidBodyEmitter(RigidBodyDistribution* distribution, zorCollide::Geometry* geometry,
                                   Real rate) {
  setDistribution(distribution);
  setGeometry(geometry);
  setRate(rate);
}

void RigidBodyEmitter::setDistribution(RigidBodyDistribution* distribution) {
  m_distribution = &checkNotNull(distribution, "RigidBodyEmitter::setDistribution");
  forgetPiece();
}

bool RigidBodyEmitter::canEmit() const {
  return m_distribution->getNumModels() > 0;
}

EmitterBase::Piece RigidBodyEmitter::drawPiece(RandomGenerator& generator) {
  m_model = m_distribution->getModel(m_distribution->draw(generator));
  Vec3 lower(1e300, 1e300, 1e300), upper = -lower;
  Real volume = 0;
  AffineMatrix4x4 const toModel = m_model->getTransform().inverse();
  for (auto const& geometry : m_model->getGeometries())
    for (UInt i = 0; i < geometry->getNumShapes(); ++i) {
      Vec3 low, high;
      geometry->getShape(i)->getBounds(geometry->getShapeTransform(i) * geometry->getTransform() * toModel,
                                       low, high);
      volume += geometry->getShape(i)->getVolume();
      for (size_t axis = 0; axis < 3; ++axis) {
        lower[axis] = std::min(lower[axis], low[axis]);
        upper[axis] = std::max(upper[axis], high[axis]);
      }
    }
  m_middle = (lower + upper) * 0.5;
  return {m_model->getMassProperties()->getMass(), volume, (upper - lower).length() / 2};
}

void RigidBodyEmitter::place(zorSDK::Simulation& simulation, Vec3 const& position, Vec3 const& velocity,
                             RandomGenerator& generator) {
  ref_ptr<RigidBody> const body = copyOf(*m_model);
  Quat const rotation = m_randomRotation ? randomRotation(generator) : m_model->getRotation();
  body->setRotation(rotation);
  body->setPosition(position - rotation * m_middle);
  body->setVelocity(velocity);
  simulation.add(body.get());
  m_bodies.push_back(body);
}

} // namespace zor
