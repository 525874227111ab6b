#pragma once

#include "zorStream/ObjectTables.h"
#include "zorStream/StateAccess.h"

namespace zorStream {

/** Puts all objects that a simulation leads to into tables, each behind those that it refers to. */
class Collector {
public:
  explicit Collector(ObjectTables& tables) : m_tables(tables) {}

  void collect(StateAccess::Contents const& contents);

private:
  void add(zor::Material& material);
  void add(zor::ContactMaterial& material);
  void add(zorRender::RenderData& data);
  void add(zorCollide::Shape& shape);
  void add(zorCollide::Geometry& geometry);
  void add(zor::RigidBody& body);
  void add(zor::Constraint& constraint);
  void add(zor::ObserverFrame& frame);
  void add(zorSDK::Assembly& assembly);
  void add(zor::ParticleModel& model);
  void add(zor::ParticleDistribution& distribution);
  void add(zor::RigidBodyDistribution& distribution);
  void add(zor::ParticleSystem& system);
  void add(zor::EmitterBase& emitter);
  void addFor(zor::Emitter& emitter);
  void addFor(zor::RigidBodyEmitter& emitter);
  template <class List>
  void addAll(List const& objects) {
    for (auto const& object : objects)
      add(*object);
  }

  ObjectTables& m_tables;
};

} // namespace zorStream
