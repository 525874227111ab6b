#include "zorSDK/SimulationImpl.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>

#include <zor/FlagScope.h>
#include <zor/Notify.h>
#include <zorUtil/TaskRecorder.h>

#include "bullet/BodyImpl.h"
#include "bullet/ConstraintImpl.h"
#include "bullet/Conversions.h"
#include "bullet/GeometryImpl.h"
#include "particles/ParticleSystemImpl.h"

namespace zorSDK {

namespace {

constexpr int DEFAULT_ITERATIONS = 30;
constexpr double STANDARD_GRAVITY = 9.81;

bool refuse(char const* what, std::string const& name, char const* why) {
  zor::notify(zor::Notify::NOTIFY_WARNING) << "Simulation::add: " << what << " '" << name << "' " << why
                                           << ", nothing is changed" << zor::endMessage;
  return false;
}

template <class T>
bool eraseFrom(zor::Vector<zor::ref_ptr<T>>& from, T& object) {
  auto const at = std::find_if(from.begin(), from.end(),
                               [&](zor::ref_ptr<T> const& each) { return each.get() == &object; });
  if (at == from.end())
    return false;
  from.erase(at);
  return true;
}

template <class T>
bool contains(zor::Vector<zor::ref_ptr<T>> const& in, T& object) {
  return std::any_of(in.begin(), in.end(),
                     [&](zor::ref_ptr<T> const& each) { return each.get() == &object; });
}

} // namespace

SimulationImpl::SimulationImpl(Simulation& owner)
    : space(new zorCollide::Space), m_owner(owner), m_spaceImpl(space->getImpl()) {
  world().setGravity(btVector3(0, 0, -STANDARD_GRAVITY));
  solverInfo().m_numIterations = DEFAULT_ITERATIONS;
}

SimulationImpl::~SimulationImpl() = default;

void SimulationImpl::shutDown() {
  m_dying = true;
  cleanup();
}

// --- adding

bool SimulationImpl::add(zor::RigidBody& body) {
  if (body.getSimulation())
    return refuse("body", body.getName(), "is already in a simulation");
  for (auto const& geometry : body.getGeometries())
    if (geometry->getSpace())
      return refuse("body", body.getName(), "has a geometry that is in a space by itself");
  bodies.push_back(&body);
  body.getImpl().enter(&m_owner, m_spaceImpl);
  return true;
}

bool SimulationImpl::add(zorCollide::Geometry& geometry) {
  if (geometry.getRigidBody())
    return refuse("geometry", geometry.getName(), "belongs to a body, which has to be added in its place");
  if (geometry.getSpace())
    return refuse("geometry", geometry.getName(), "is already in a simulation");
  return space->add(&geometry);
}

bool SimulationImpl::add(zor::Constraint& constraint) {
  if (constraint.getSimulation())
    return refuse("constraint", constraint.getName(), "is already in a simulation");
  for (zor::UInt i = 0; i < 2; ++i) {
    zor::RigidBody const* body = constraint.getBody(i);
    if (body && body->getSimulation() && body->getSimulation() != &m_owner)
      return refuse("constraint", constraint.getName(), "holds a body of another simulation");
  }
  constraints.push_back(&constraint);
  constraint.getImpl().enter(&m_owner, m_spaceImpl);
  return true;
}

bool SimulationImpl::add(zor::Material& material) {
  if (contains(materials, material))
    return refuse("material", material.getName(), "is already in this simulation");
  materials.push_back(&material);
  return true;
}

bool SimulationImpl::add(zor::ContactMaterial& contactMaterial) {
  if (contains(contactMaterials, contactMaterial))
    return refuse("contact material", contactMaterial.getName(), "is already in this simulation");
  contactMaterials.push_back(&contactMaterial);
  space->add(&contactMaterial);
  return true;
}

bool SimulationImpl::add(zor::ObserverFrame& frame) {
  if (frame.m_simulation)
    return refuse("observer frame", frame.getName(), "is already in a simulation");
  frames.push_back(&frame);
  frame.m_simulation = &m_owner;
  return true;
}

bool SimulationImpl::add(zor::ParticleSystem& particles) {
  if (particles.m_simulation)
    return refuse("particle system", particles.getName(), "is already in a simulation");
  particleSystems.push_back(&particles);
  particles.m_simulation = &m_owner;
  return true;
}

bool SimulationImpl::add(zor::EmitterBase& emitter) {
  if (emitter.m_simulation)
    return refuse("emitter", emitter.getName(), "is already in a simulation");
  emitters.push_back(&emitter);
  emitter.m_simulation = &m_owner;
  return true;
}

bool SimulationImpl::add(Assembly& assembly) {
  if (assembly.m_simulation)
    return refuse("assembly", assembly.getName(), "is already in a simulation");
  assemblies.push_back(&assembly);
  enterAssembly(assembly);
  return true;
}

bool SimulationImpl::add(EventListener& listener) {
  if (listener.m_simulation)
    return refuse("listener", listener.getName(), "is already in a simulation");
  zor::ref_ptr<EventListener> const keep = &listener;
  listeners.push_back(&listener);
  listener.m_simulation = &m_owner;
  try {
    listener.setContext(&m_owner);
    listener.addNotification();
  } catch (...) { // one that failed to enter is not in
    eraseFrom(listeners, listener);
    listener.m_simulation = nullptr;
    listener.zor::Component::setContext(nullptr); // not the override, which may be what failed
    throw;
  }
  return true;
}

void SimulationImpl::enterAssembly(Assembly& assembly) {
  assembly.m_simulation = &m_owner;
  for (auto const& body : assembly.m_bodies)
    add(*body);
  for (auto const& geometry : assembly.m_geometries)
    add(*geometry);
  for (auto const& constraint : assembly.m_constraints)
    add(*constraint);
  for (auto const& frame : assembly.m_frames)
    add(*frame);
  for (auto const& nested : assembly.m_assemblies)
    enterAssembly(*nested);
  // Listeners last: what they look up when they are told is there. From a copy, as they may change the list.
  EventListenerRefVector const added = assembly.m_listeners;
  for (auto const& listener : added)
    add(*listener);
}

// --- removing

bool SimulationImpl::remove(zor::RigidBody& body) {
  if (body.getSimulation() != &m_owner)
    return false;
  zor::ref_ptr<zor::RigidBody> const keep = &body;
  body.getImpl().leave();
  eraseFrom(bodies, body);
  for (auto const& constraint : constraints)
    constraint->getImpl().update(); // those of the body have nothing to hold any more
  return true;
}

bool SimulationImpl::remove(zorCollide::Geometry& geometry) {
  if (geometry.getSpace() != space.get() || geometry.getRigidBody())
    return false;
  return space->remove(&geometry);
}

bool SimulationImpl::remove(zor::Constraint& constraint) {
  if (constraint.getSimulation() != &m_owner)
    return false;
  constraint.getImpl().leave();
  return eraseFrom(constraints, constraint);
}

bool SimulationImpl::remove(zor::Material& material) {
  return eraseFrom(materials, material);
}

bool SimulationImpl::remove(zor::ContactMaterial& contactMaterial) {
  zor::ref_ptr<zor::ContactMaterial> const keep = &contactMaterial;
  if (!eraseFrom(contactMaterials, contactMaterial))
    return false;
  space->remove(&contactMaterial);
  return true;
}

bool SimulationImpl::remove(zor::ObserverFrame& frame) {
  if (frame.m_simulation != &m_owner)
    return false;
  frame.m_simulation = nullptr;
  return eraseFrom(frames, frame);
}

bool SimulationImpl::remove(zor::ParticleSystem& particles) {
  if (particles.m_simulation != &m_owner)
    return false;
  particles.m_simulation = nullptr;
  return eraseFrom(particleSystems, particles);
}

bool SimulationImpl::remove(zor::EmitterBase& emitter) {
  if (emitter.m_simulation != &m_owner)
    return false;
  emitter.m_simulation = nullptr;
  return eraseFrom(emitters, emitter);
}

bool SimulationImpl::remove(Assembly& assembly) {
  zor::ref_ptr<Assembly> const keep = &assembly;
  if (!eraseFrom(assemblies, assembly))
    return false;
  leaveAssembly(assembly);
  return true;
}

bool SimulationImpl::remove(EventListener& listener) {
  if (listener.m_simulation != &m_owner)
    return false;
  zor::ref_ptr<EventListener> const keep = &listener;
  if (!eraseFrom(listeners, listener)) // being removed already
    return false;
  notifyRemoval(listener);
  return true;
}

// The listener leaves also when its own method throws.
void SimulationImpl::notifyRemoval(EventListener& listener) {
  if (m_dying) // nobody may take a reference of the simulation any more
    listener.m_simulation = nullptr;
  struct Leave {
    EventListener& listener;
    ~Leave() { listener.m_simulation = nullptr; }
  } const leave{listener};
  listener.removeNotification();
  listener.setContext(nullptr);
}

void SimulationImpl::leaveAssembly(Assembly& assembly) {
  EventListenerRefVector const leaving = assembly.m_listeners;
  for (auto const& listener : leaving)
    remove(*listener);
  for (auto const& nested : assembly.m_assemblies)
    leaveAssembly(*nested);
  for (auto const& constraint : assembly.m_constraints)
    remove(*constraint);
  for (auto const& frame : assembly.m_frames)
    remove(*frame);
  for (auto const& geometry : assembly.m_geometries)
    remove(*geometry);
  for (auto const& body : assembly.m_bodies)
    remove(*body);
  assembly.m_simulation = nullptr;
}

void SimulationImpl::cleanup() {
  while (!listeners.empty()) {
    try {
      remove(*listeners.back());
    } catch (std::exception const& error) { // the rest has to go all the same
      zor::notify(zor::Notify::NOTIFY_ERROR) << "Simulation::cleanup: " << error.what() << zor::endMessage;
    }
  }
  while (!assemblies.empty())
    remove(*assemblies.back());
  while (!constraints.empty())
    remove(*constraints.back());
  while (!bodies.empty())
    remove(*bodies.back());
  while (!space->getGeometries().empty())
    space->remove(space->getGeometries().back().get());
  while (!frames.empty())
    remove(*frames.back());
  while (!emitters.empty())
    remove(*emitters.back());
  while (!particleSystems.empty())
    remove(*particleSystems.back());
  while (!contactMaterials.empty())
    remove(*contactMaterials.back());
  materials.clear();
  m_touches.clear();
  m_statistics = SimulationStatistics();
  setTime(0);
}

// --- time

void SimulationImpl::setTimeStep(double dt) {
  setTime(time());
  m_timeStep = dt;
}

void SimulationImpl::setTime(double time) {
  m_startTime = time;
  m_stepsSinceStart = 0;
}

template <class Call>
void SimulationImpl::timed(char const* task, double& seconds, Call call) {
  zorUtil::TaskScope const record(task);
  auto const start = std::chrono::steady_clock::now();
  call();
  seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void SimulationImpl::step() {
  if (m_stepping)
    throw std::runtime_error("Simulation: a step inside a step");
  zor::FlagScope const scope(m_stepping);
  m_statistics.stepTime = m_statistics.collisionTime = m_statistics.solverTime = m_statistics.listenerTime =
      0;
  timed("step", m_statistics.stepTime, [this] {
    double const dt = m_timeStep / static_cast<double>(subSteps);
    emit();
    callStepListeners(StepEventListener::PRE_COLLIDE, &StepEventListener::preCollide);
    timed("step: collision", m_statistics.collisionTime, [&] {
      m_spaceImpl.beforeStep();
      world().findContacts(dt);
      m_spaceImpl.prepareContacts(dt);
    });
    m_spaceImpl.setLastTimeStep(0); // these contacts have no forces yet
    callContactListeners();
    callStepListeners(StepEventListener::PRE_STEP, &StepEventListener::pre);
    move(dt);
    m_spaceImpl.setLastTimeStep(dt);
    ++m_stepsSinceStart;
    ++m_statistics.steps;
    callStepListeners(StepEventListener::POST_STEP, &StepEventListener::post);
    callStepListeners(StepEventListener::LAST_STEP, &StepEventListener::last);
  });
}

void SimulationImpl::move(double dt) {
  for (auto const& body : bodies)
    body->getImpl().beforeStep(autoSleep, m_timeStep);
  for (auto const& constraint : constraints)
    constraint->getImpl().update();
  m_spaceImpl.solverReport() = {};
  world().applyGravity();
  for (zor::UInt i = 0; i < subSteps; ++i) {
    if (i > 0)
      timed("step: collision", m_statistics.collisionTime, [&] {
        m_spaceImpl.beforeStep();
        world().findContacts(dt);
        dropRemovedContacts();
        m_spaceImpl.prepareContacts(dt);
      });
    timed("step: motion", m_statistics.solverTime, [&] {
      for (auto const& constraint : constraints)
        constraint->getImpl().beforeSubStep(dt);
      moveParticles(dt);
      world().computeMotion(dt);
      for (auto const& body : bodies)
        body->getImpl().advanceKinematics(dt);
      for (auto const& constraint : constraints)
        constraint->getImpl().afterSubStep(dt);
    });
  }
  world().clearForces();
  synchronise();
}

void SimulationImpl::emit() {
  for (auto const& emitter : emitters)
    emitter->emit(m_timeStep);
}

// Before the bodies, which feel what the particles do to them in the same step.
void SimulationImpl::moveParticles(double dt) {
  for (auto const& particles : particleSystems)
    if (!particles->getImpl().step(dt, m_owner.getUniformGravity(), m_spaceImpl))
      zor::notify(zor::Notify::NOTIFY_ERROR)
          << "Simulation: the motion of particles of '" << particles->getName()
          << "' is no longer finite; they are switched off" << zor::endMessage;
}

void SimulationImpl::synchronise() {
  for (auto const& body : bodies) {
    body->getImpl().afterStep(m_timeStep);
    if (!body->getImpl().synchronise())
      zor::notify(zor::Notify::NOTIFY_ERROR)
          << "Simulation: the motion of body '" << body->getName()
          << "' is no longer finite; it rests where it was before the step" << zor::endMessage;
  }
}

// --- listeners

bool SimulationImpl::canCall(EventListener const& listener, int bit) const {
  return listener.m_simulation == &m_owner && listener.m_enabled && (listener.m_mask & bit);
}

// \return whether there are any
bool SimulationImpl::collectListeners(bool contactListeners) {
  m_called.clear();
  for (auto const& listener : listeners) {
    bool const isContact = dynamic_cast<ContactEventListener const*>(listener.get()) != nullptr;
    bool const isStep = !isContact && dynamic_cast<StepEventListener const*>(listener.get()) != nullptr;
    if (contactListeners ? isContact : isStep)
      m_called.push_back(listener);
  }
  return !m_called.empty();
}

void SimulationImpl::callStepListeners(int phase, void (StepEventListener::*method)(zor::TimeStamp)) {
  timed("step: listeners", m_statistics.listenerTime, [&] {
    if (!collectListeners(false))
      return;
    for (auto const& listener : m_called)
      if (canCall(*listener, phase))
        (static_cast<StepEventListener&>(*listener).*method)(time());
    m_called.clear();
  });
}

size_t SimulationImpl::KeyHash::operator()(GeometryKey const& key) const noexcept {
  std::hash<void const*> const hash;
  return hash(key.first) * 31 + hash(key.second);
}

void SimulationImpl::callContactListeners() {
  m_removedContacts.clear();
  timed("step: listeners", m_statistics.listenerTime, [this] {
    if (!collectListeners(true)) {
      m_touches.clear();
      return;
    }
    for (auto& [key, touch] : m_touches)
      touch.now = false;
    for (zorCollide::GeometryContact& contact : space->getGeometryContacts()) {
      GeometryKey const key = std::minmax(contact.getGeometry1(), contact.getGeometry2());
      auto const [at, isNew] =
          m_touches.try_emplace(key, Touch{contact.getGeometry1(), contact.getGeometry2(), m_numTouches});
      m_numTouches += isNew ? 1 : 0;
      at->second.now = true;
      if (callForContact(contact, isNew))
        m_removedContacts.push_back(key);
    }
    callForSeparations();
    m_called.clear();
  });
  dropRemovedContacts();
}

// \return whether the contact is to be removed
bool SimulationImpl::callForContact(zorCollide::GeometryContact& contact, bool isNew) {
  bool removed = false;
  for (auto const& listener : m_called) {
    bool const here = contact.getGeometry1()->getSpace() == space.get() &&
                      contact.getGeometry2()->getSpace() == space.get();
    auto& receiver = static_cast<ContactEventListener&>(*listener);
    if (!here || !canCall(receiver, isNew ? ContactEventListener::IMPACT : ContactEventListener::CONTACT) ||
        !receiver.match(contact.getGeometry1(), contact.getGeometry2()))
      continue;
    Policy const policy = isNew ? receiver.impact(time(), contact) : receiver.contact(time(), contact);
    removed = removed || policy == ContactEventListener::REMOVE_CONTACT;
  }
  return removed;
}

void SimulationImpl::callForSeparations() {
  std::vector<Touch> parted;
  for (auto at = m_touches.begin(); at != m_touches.end();) {
    if (!at->second.now)
      parted.push_back(at->second);
    at = at->second.now ? std::next(at) : m_touches.erase(at);
  }
  std::sort(parted.begin(), parted.end(), [](Touch const& a, Touch const& b) { return a.number < b.number; });
  for (Touch const& touch : parted)
    for (auto const& listener : m_called) {
      auto& receiver = static_cast<ContactEventListener&>(*listener);
      if (canCall(receiver, ContactEventListener::SEPARATION) &&
          receiver.match(touch.geometry1.get(), touch.geometry2.get()))
        receiver.separation(time(), touch.geometry1.get(), touch.geometry2.get());
    }
}

// The engine's contact points of the pairs that listeners do not want.
void SimulationImpl::dropRemovedContacts() {
  if (m_removedContacts.empty())
    return;
  btDispatcher* dispatcher = world().getDispatcher();
  for (int i = 0; i < dispatcher->getNumManifolds(); ++i) {
    btPersistentManifold* manifold = dispatcher->getManifoldByIndexInternal(i);
    for (int p = manifold->getNumContacts() - 1; p >= 0; --p) {
      auto const* pair = zorBullet::SpaceImpl::pairOf(manifold->getContactPoint(p));
      if (!pair)
        continue;
      GeometryKey const key = std::minmax(&pair->first->geometry(), &pair->second->geometry());
      if (std::find(m_removedContacts.begin(), m_removedContacts.end(), key) != m_removedContacts.end())
        manifold->removeContactPoint(p);
    }
  }
}

void SimulationImpl::setSolver(Simulation::SolverType type) {
  if (m_stepping)
    throw std::runtime_error("Simulation::setSolverType: not inside a step");
  m_spaceImpl.setSolver(type == Simulation::CONJUGATE_GRADIENT);
  solverType = type;
}

zor::RealVector SimulationImpl::state() const {
  constexpr size_t NUMBERS = 14; // of a body, and of a particle
  zor::RealVector state;
  size_t size = 1 + NUMBERS * bodies.size();
  for (auto const& system : particleSystems)
    size += 1 + NUMBERS * system->getNumParticles();
  state.reserve(size);
  state.push_back(time());
  auto const add = [&state](auto const& value, size_t count) {
    for (size_t i = 0; i < count; ++i)
      state.push_back(value[i]);
  };
  for (auto const& body : bodies) {
    add(body->getPosition(), 3);
    add(body->getRotation(), 4);
    add(body->getVelocity(), 3);
    add(body->getAngularVelocity(), 3);
    state.push_back(body->isSleeping() ? 1 : 0);
  }
  for (auto const& system : particleSystems) {
    zorParticles::ParticleStore const& store = system->getImpl().store;
    state.push_back(static_cast<double>(store.size()));
    for (size_t i = 0; i < store.size(); ++i) {
      add(store.position[i], 3);
      add(store.rotation[i], 4);
      add(store.velocity[i], 3);
      add(store.angularVelocity[i], 3);
      state.push_back(store.enabled[i] ? 1 : 0);
    }
  }
  return state;
}

SimulationStatistics SimulationImpl::statistics() const {
  SimulationStatistics result = m_statistics;
  result.bodies = bodies.size();
  result.sleepingBodies = static_cast<zor::UInt>(
      std::count_if(bodies.begin(), bodies.end(), [](auto const& body) { return body->isSleeping(); }));
  result.constraints = constraints.size();
  result.solverIterations = static_cast<zor::UInt>(m_spaceImpl.solverReport().iterations);
  result.solverResidual = std::sqrt(m_spaceImpl.solverReport().squaredSpeed);
  for (zorCollide::GeometryContact const& contact : space->getGeometryContacts()) {
    ++result.contacts;
    result.contactPoints += contact.getPoints().size();
  }
  return result;
}

} // namespace zorSDK
