#pragma once

#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <zor/ref_ptr.h>
#include <zorCollide/Space.h>
#include <zorSDK/ContactEventListener.h>
#include <zorSDK/Simulation.h>
#include <zorSDK/StepEventListener.h>

#include "bullet/SpaceImpl.h"

namespace zorStream {
struct StateAccess;
}

namespace zorSDK {

/** What a simulation holds, and its step. */
class SimulationImpl {
public:
  explicit SimulationImpl(Simulation& owner);
  ~SimulationImpl();
  SimulationImpl(SimulationImpl const&) = delete;
  SimulationImpl& operator=(SimulationImpl const&) = delete;

  bool add(zor::RigidBody& body);
  bool add(zorCollide::Geometry& geometry);
  bool add(zor::Constraint& constraint);
  bool add(zor::Material& material);
  bool add(zor::ContactMaterial& contactMaterial);
  bool add(zor::ObserverFrame& frame);
  bool add(zor::ParticleSystem& particles);
  bool add(zor::EmitterBase& emitter);
  bool add(Assembly& assembly);
  bool add(EventListener& listener);

  bool remove(zor::RigidBody& body);
  bool remove(zorCollide::Geometry& geometry);
  bool remove(zor::Constraint& constraint);
  bool remove(zor::Material& material);
  bool remove(zor::ContactMaterial& contactMaterial);
  bool remove(zor::ObserverFrame& frame);
  bool remove(zor::ParticleSystem& particles);
  bool remove(zor::EmitterBase& emitter);
  bool remove(Assembly& assembly);
  bool remove(EventListener& listener);
  void cleanup();
  /** As cleanup, for a simulation that is being destroyed. */
  void shutDown();

  /** The contents of an assembly, nested in another or not. */
  void enterAssembly(Assembly& assembly);
  void leaveAssembly(Assembly& assembly);

  void step();
  void setTimeStep(double dt);
  void setTime(double time);
  double time() const { return m_startTime + static_cast<double>(m_stepsSinceStart) * m_timeStep; }
  double timeStep() const { return m_timeStep; }
  bool stepping() const { return m_stepping; }
  void setSolver(Simulation::SolverType type);
  zor::RealVector state() const;

  btContactSolverInfo& solverInfo() { return world().getSolverInfo(); }
  zorBullet::DynamicsWorld& world() { return m_spaceImpl.world(); }
  SimulationStatistics statistics() const;

  zor::ref_ptr<zorCollide::Space> space;
  zor::RigidBodyRefVector bodies;
  zor::ConstraintRefVector constraints;
  zor::Vector<zor::ref_ptr<zor::Material>> materials;
  zor::Vector<zor::ref_ptr<zor::ContactMaterial>> contactMaterials;
  zor::ObserverFrameRefVector frames;
  zor::ParticleSystemRefVector particleSystems;
  zor::EmitterRefVector emitters;
  AssemblyRefVector assemblies;
  EventListenerRefVector listeners;
  zor::UInt subSteps = 1;
  bool autoSleep = false;
  Simulation::SolverType solverType = Simulation::SEQUENTIAL_IMPULSES;

private:
  friend struct zorStream::StateAccess;
  using Policy = ContactEventListener::KeepContactPolicy;
  using GeometryKey = std::pair<zorCollide::Geometry*, zorCollide::Geometry*>;

  // Two geometries in touch; holds them, so that their separation can be told when they are gone.
  struct Touch {
    zor::ref_ptr<zorCollide::Geometry> geometry1;
    zor::ref_ptr<zorCollide::Geometry> geometry2;
    zor::UInt number = 0; // touches are numbered as they come, for an order that does not depend on addresses
    bool now = false;
  };
  struct KeyHash {
    size_t operator()(GeometryKey const& key) const noexcept;
  };

  void notifyRemoval(EventListener& listener);

  void emit();
  void moveParticles(double dt);
  void move(double dt);
  void synchronise();
  void callStepListeners(int phase, void (StepEventListener::*method)(zor::TimeStamp));
  void callContactListeners();
  bool callForContact(zorCollide::GeometryContact& contact, bool isNew);
  void callForSeparations();
  void dropRemovedContacts();
  bool collectListeners(bool contactListeners);
  bool canCall(EventListener const& listener, int bit) const;
  template <class Call>
  void timed(char const* task, double& seconds, Call call);

  Simulation& m_owner;
  zorBullet::SpaceImpl& m_spaceImpl;

  double m_timeStep = 1.0 / 60.0;
  double m_startTime = 0; // time is counted in steps from here, which does not add up rounding
  zor::UInt m_stepsSinceStart = 0;
  bool m_stepping = false;
  bool m_dying = false;
  SimulationStatistics m_statistics;

  EventListenerRefVector m_called; // copy, as listeners may be added and removed inside a call
  std::unordered_map<GeometryKey, Touch, KeyHash> m_touches;
  zor::UInt m_numTouches = 0;                 // ever
  std::vector<GeometryKey> m_removedContacts; // of this step
};

} // namespace zorSDK
