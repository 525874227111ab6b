#include "zorStream/Collector.h"

#include <stdexcept>

#include <zorCollide/Compound.h>

#include "particles/ParticleSystemImpl.h"

namespace zorStream {

void Collector::collect(StateAccess::Contents const& contents) {
  addAll(contents.materials);
  addAll(contents.contactMaterials);
  addAll(contents.usedContactMaterials);
  addAll(contents.bodies);
  addAll(contents.geometries);
  addAll(contents.constraints);
  addAll(contents.observerFrames);
  addAll(contents.assemblies);
  addAll(contents.particleSystems);
  addAll(contents.emitters);
  StateAccess::nameFrames(m_tables);
}

void Collector::add(zor::Material& material) {
  m_tables.materials.add(material);
}

void Collector::add(zor::ContactMaterial& material) {
  add(*material.getMaterial1());
  add(*material.getMaterial2());
  m_tables.contactMaterials.add(material);
}

void Collector::add(zorRender::RenderData& data) {
  if (data.getRenderMaterial())
    m_tables.renderMaterials.add(*data.getRenderMaterial());
  m_tables.renderData.add(data);
}

void Collector::add(zorCollide::Shape& shape) {
  if (m_tables.shapes.contains(shape))
    return;
  if (auto const* compound = dynamic_cast<zorCollide::Compound const*>(&shape))
    for (zor::UInt i = 0; i < compound->getNumShapes(); ++i)
      add(*compound->getShape(i));
  if (shape.getRenderData())
    add(*shape.getRenderData());
  m_tables.shapes.add(shape);
}

void Collector::add(zorCollide::Geometry& geometry) {
  if (m_tables.geometries.contains(geometry))
    return;
  for (zor::UInt i = 0; i < geometry.getNumShapes(); ++i)
    add(*geometry.getShape(i));
  add(*geometry.getMaterial());
  m_tables.geometries.add(geometry);
}

void Collector::add(zor::RigidBody& body) {
  if (m_tables.bodies.contains(body))
    return;
  addAll(body.getGeometries());
  m_tables.bodies.add(body);
}

void Collector::add(zor::Constraint& constraint) {
  for (zor::UInt i = 0; i < 2; ++i)
    if (zor::RigidBody* const body = constraint.getBody(i))
      add(*body);
  m_tables.constraints.add(constraint);
}

void Collector::add(zor::ObserverFrame& frame) {
  if (frame.getRigidBody())
    add(*frame.getRigidBody());
  m_tables.observerFrames.add(frame);
}

void Collector::add(zorSDK::Assembly& assembly) {
  if (m_tables.assemblies.contains(assembly))
    return;
  addAll(assembly.getRigidBodies());
  addAll(assembly.getGeometries());
  addAll(assembly.getConstraints());
  addAll(assembly.getObserverFrames());
  addAll(assembly.getAssemblies());
  m_tables.assemblies.add(assembly);
}

// --- particles

void Collector::add(zor::ParticleModel& model) {
  if (model.getMaterial())
    add(*model.getMaterial());
  m_tables.particleModels.add(model);
}

void Collector::add(zor::ParticleDistribution& distribution) {
  for (zor::UInt i = 0; i < distribution.getNumModels(); ++i)
    add(*distribution.getModel(i));
  m_tables.particleDistributions.add(distribution);
}

void Collector::add(zor::RigidBodyDistribution& distribution) {
  for (zor::UInt i = 0; i < distribution.getNumModels(); ++i)
    add(*distribution.getModel(i));
  m_tables.bodyDistributions.add(distribution);
}

void Collector::add(zor::ParticleSystem& system) {
  add(*system.getMaterial());
  addAll(system.getImpl().materials);
  m_tables.particleSystems.add(system);
}

void Collector::add(zor::EmitterBase& emitter) {
  zorCollide::Geometry& geometry = *emitter.getGeometry();
  if (geometry.getRigidBody())
    add(*geometry.getRigidBody());
  add(geometry);
  if (auto* const ofParticles = dynamic_cast<zor::Emitter*>(&emitter))
    addFor(*ofParticles);
  else if (auto* const ofBodies = dynamic_cast<zor::RigidBodyEmitter*>(&emitter))
    addFor(*ofBodies);
  else
    throw std::runtime_error("Simulation::write: emitter '" + emitter.getName() +
                             "' is of a kind that can't be stored");
  m_tables.emitters.add(emitter);
}

void Collector::addFor(zor::Emitter& emitter) {
  add(*emitter.getParticleSystem());
  add(*emitter.getDistribution());
  if (zor::ParticleModel* const drawn = StateAccess::drawnModel(emitter))
    add(*drawn);
}

void Collector::addFor(zor::RigidBodyEmitter& emitter) {
  add(*emitter.getDistribution());
  addAll(emitter.getBodies());
  if (zor::RigidBody* const drawn = StateAccess::drawnModel(emitter))
    add(*drawn);
}

} // namespace zorStream
