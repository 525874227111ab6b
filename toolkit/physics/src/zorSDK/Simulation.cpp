#include <zorSDK/Simulation.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <stdexcept>

#include "bullet/BodyImpl.h"
#include "bullet/Conversions.h"
#include "zor/Checks.h"
#include "zorSDK/SimulationImpl.h"

namespace zorSDK {

namespace {

template <class T>
T* findByName(zor::Vector<zor::ref_ptr<T>> const& in, std::string const& name) {
  auto const at =
      std::find_if(in.begin(), in.end(), [&](auto const& each) { return each->getName() == name; });
  return at == in.end() ? nullptr : at->get();
}

// By name, else by a path that starts with the name of an assembly.
template <class T>
T* findByName(zor::Vector<zor::ref_ptr<T>> const& in, AssemblyRefVector const& assemblies,
              T* (Assembly::*look)(std::string const&) const, std::string const& name) {
  if (T* found = findByName(in, name))
    return found;
  for (auto const& assembly : assemblies) {
    std::string const& first = assembly->getName();
    if (name.size() > first.size() && name[first.size()] == '/' && name.starts_with(first))
      if (T* found = (assembly.get()->*look)(name.substr(first.size() + 1)))
        return found;
  }
  return nullptr;
}

zor::UInt checkCount(zor::UInt count, zor::UInt most, char const* where) {
  if (count < 1 || count > most)
    throw std::invalid_argument(std::string(where) + ": " + std::to_string(count) + " is not 1 to " +
                                std::to_string(most));
  return count;
}

} // namespace

Simulation::Simulation() : m_impl(std::make_unique<SimulationImpl>(*this)) {}

Simulation::~Simulation() {
  m_impl->shutDown();
}

bool Simulation::add(zor::RigidBody* body) {
  return m_impl->add(zor::checkNotNull(body, "Simulation::add"));
}

bool Simulation::add(zorCollide::Geometry* geometry) {
  return m_impl->add(zor::checkNotNull(geometry, "Simulation::add"));
}

bool Simulation::add(zor::Constraint* constraint) {
  return m_impl->add(zor::checkNotNull(constraint, "Simulation::add"));
}

bool Simulation::add(zor::Material* material) {
  return m_impl->add(zor::checkNotNull(material, "Simulation::add"));
}

bool Simulation::add(zor::ContactMaterial* contactMaterial) {
  return m_impl->add(zor::checkNotNull(contactMaterial, "Simulation::add"));
}

bool Simulation::add(zor::ObserverFrame* frame) {
  return m_impl->add(zor::checkNotNull(frame, "Simulation::add"));
}

bool Simulation::add(zor::ParticleSystem* particles) {
  return m_impl->add(zor::checkNotNull(particles, "Simulation::add"));
}

bool Simulation::add(zor::EmitterBase* emitter) {
  return m_impl->add(zor::checkNotNull(emitter, "Simulation::add"));
}

bool Simulation::add(Assembly* assembly) {
  return m_impl->add(zor::checkNotNull(assembly, "Simulation::add"));
}

bool Simulation::add(EventListener* listener) {
  return m_impl->add(zor::checkNotNull(listener, "Simulation::add"));
}

bool Simulation::remove(zor::RigidBody* body) {
  return m_impl->remove(zor::checkNotNull(body, "Simulation::remove"));
}

bool Simulation::remove(zorCollide::Geometry* geometry) {
  return m_impl->remove(zor::checkNotNull(geometry, "Simulation::remove"));
}

bool Simulation::remove(zor::Constraint* constraint) {
  return m_impl->remove(zor::checkNotNull(constraint, "Simulation::remove"));
}

bool Simulation::remove(zor::Material* material) {
  return m_impl->remove(zor::checkNotNull(material, "Simulation::remove"));
}

bool Simulation::remove(zor::ContactMaterial* contactMaterial) {
  return m_impl->remove(zor::checkNotNull(contactMaterial, "Simulation::remove"));
}

bool Simulation::remove(zor::ObserverFrame* frame) {
  return m_impl->remove(zor::checkNotNull(frame, "Simulation::remove"));
}

bool Simulation::remove(zor::ParticleSystem* particles) {
  return m_impl->remove(zor::checkNotNull(particles, "Simulation::remove"));
}

bool Simulation::remove(zor::EmitterBase* emitter) {
  return m_impl->remove(zor::checkNotNull(emitter, "Simulation::remove"));
}

bool Simulation::remove(Assembly* assembly) {
  return m_impl->remove(zor::checkNotNull(assembly, "Simulation::remove"));
}

bool Simulation::remove(EventListener* listener) {
  return m_impl->remove(zor::checkNotNull(listener, "Simulation::remove"));
}

void Simulation::stepForward() {
  m_impl->step();
}

zor::UInt Simulation::stepTo(zor::Real time) {
  zor::checkFinite(time, "Simulation::stepTo");
  constexpr zor::Real ROUNDING = 1e-6; // of a step: time is a sum of steps
  constexpr zor::Real MOST_STEPS = 1e9;
  if (time - getTimeStamp() > MOST_STEPS * getTimeStep() ||
      getTimeStamp() + getTimeStep() == getTimeStamp()) {
    throw std::invalid_argument("Simulation::stepTo: the time is out of reach of the time step");
  }
  zor::UInt steps = 0;
  while (getTimeStamp() + getTimeStep() * (1 - ROUNDING) <= time) {
    m_impl->step();
    ++steps;
  }
  return steps;
}

void Simulation::setTimeStep(zor::Real dt) {
  zor::checkPositive(dt, "Simulation::setTimeStep");
  m_impl->setTimeStep(dt);
}

zor::Real Simulation::getTimeStep() const {
  return m_impl->timeStep();
}

void Simulation::setTimeStamp(zor::TimeStamp time) {
  zor::checkFinite(time, "Simulation::setTimeStamp");
  m_impl->setTime(time);
}

zor::TimeStamp Simulation::getTimeStamp() const {
  return m_impl->time();
}

void Simulation::setNumSubSteps(zor::UInt count) {
  m_impl->subSteps = checkCount(count, 100, "Simulation::setNumSubSteps");
}

zor::UInt Simulation::getNumSubSteps() const {
  return m_impl->subSteps;
}

void Simulation::setNumSolverIterations(zor::UInt count) {
  m_impl->solverInfo().m_numIterations =
      static_cast<int>(checkCount(count, 10000, "Simulation::setNumSolverIterations"));
}

zor::UInt Simulation::getNumSolverIterations() const {
  return static_cast<zor::UInt>(m_impl->solverInfo().m_numIterations);
}

// The engine compares squares.
void Simulation::setSolverTolerance(zor::Real tolerance) {
  zor::checkNotNegative(tolerance, "Simulation::setSolverTolerance");
  m_impl->solverInfo().m_leastSquaresResidualThreshold = tolerance * tolerance;
}

zor::Real Simulation::getSolverTolerance() const {
  return std::sqrt(m_impl->solverInfo().m_leastSquaresResidualThreshold);
}

void Simulation::setSolverType(SolverType type) {
  if (type != SEQUENTIAL_IMPULSES && type != CONJUGATE_GRADIENT)
    throw std::invalid_argument("Simulation::setSolverType: " + std::to_string(static_cast<int>(type)) +
                                " is no solver");
  m_impl->setSolver(type);
}

Simulation::SolverType Simulation::getSolverType() const {
  return m_impl->solverType;
}

void Simulation::setUniformGravity(zor::Vec3 const& gravity) {
  zor::checkFinite(gravity, "Simulation::setUniformGravity");
  for (auto const& body : m_impl->bodies)
    body->getImpl().wake(); // the engine leaves sleeping bodies out
  m_impl->world().setGravity(zorBullet::toBt(gravity));
}

zor::Vec3 Simulation::getUniformGravity() const {
  return zorBullet::fromBt(m_impl->world().getGravity());
}

void Simulation::setEnableAutoSleep(bool enable) {
  m_impl->autoSleep = enable;
  if (!enable)
    for (auto const& body : m_impl->bodies)
      body->getImpl().wake();
}

bool Simulation::getEnableAutoSleep() const {
  return m_impl->autoSleep;
}

zorCollide::Space* Simulation::getSpace() const {
  return m_impl->space.get();
}

zor::RigidBodyRefVector const& Simulation::getRigidBodies() const {
  return m_impl->bodies;
}

zorCollide::GeometryRefVector const& Simulation::getGeometries() const {
  return m_impl->space->getGeometries();
}

zor::ConstraintRefVector const& Simulation::getConstraints() const {
  return m_impl->constraints;
}

zor::Vector<zor::ref_ptr<zor::Material>> const& Simulation::getMaterials() const {
  return m_impl->materials;
}

zor::Vector<zor::ref_ptr<zor::ContactMaterial>> const& Simulation::getContactMaterials() const {
  return m_impl->contactMaterials;
}

zor::ObserverFrameRefVector const& Simulation::getObserverFrames() const {
  return m_impl->frames;
}

zor::ParticleSystemRefVector const& Simulation::getParticleSystems() const {
  return m_impl->particleSystems;
}

zor::ParticleSystem* Simulation::getParticleSystem(std::string const& name) const {
  return findByName(m_impl->particleSystems, name);
}

zor::ParticleSystem* Simulation::getParticleSystem() const {
  return m_impl->particleSystems.empty() ? nullptr : m_impl->particleSystems.front().get();
}

zor::EmitterRefVector const& Simulation::getEmitters() const {
  return m_impl->emitters;
}

zor::EmitterBase* Simulation::getEmitter(std::string const& name) const {
  return findByName(m_impl->emitters, name);
}

AssemblyRefVector const& Simulation::getAssemblies() const {
  return m_impl->assemblies;
}

EventListenerRefVector const& Simulation::getListeners() const {
  return m_impl->listeners;
}

zor::RigidBody* Simulation::getRigidBody(std::string const& name) const {
  return findByName(m_impl->bodies, m_impl->assemblies, &Assembly::getRigidBody, name);
}

zorCollide::Geometry* Simulation::getGeometry(std::string const& name) const {
  return findByName(m_impl->space->getGeometries(), m_impl->assemblies, &Assembly::getGeometry, name);
}

zor::Constraint* Simulation::getConstraint(std::string const& name) const {
  return findByName(m_impl->constraints, m_impl->assemblies, &Assembly::getConstraint, name);
}

zor::Constraint1DOF* Simulation::getConstraint1DOF(std::string const& name) const {
  for (auto const& constraint : m_impl->constraints)
    if (auto* found = dynamic_cast<zor::Constraint1DOF*>(constraint.get()); found && found->getName() == name)
      return found;
  return nullptr;
}

zor::Material* Simulation::getMaterial(std::string const& name) const {
  return findByName(m_impl->materials, name);
}

zor::ContactMaterial* Simulation::getContactMaterial(zor::Material const* material1,
                                                     zor::Material const* material2) const {
  return m_impl->space->getContactMaterial(material1, material2);
}

zor::ObserverFrame* Simulation::getObserverFrame(std::string const& name) const {
  return findByName(m_impl->frames, m_impl->assemblies, &Assembly::getObserverFrame, name);
}

Assembly* Simulation::getAssembly(std::string const& name) const {
  if (Assembly* found = findByName(m_impl->assemblies, name))
    return found;
  for (auto const& assembly : m_impl->assemblies)
    if (Assembly* found = assembly->getAssembly(name))
      return found;
  return findByName(m_impl->assemblies, m_impl->assemblies, &Assembly::getAssembly, name);
}

EventListener* Simulation::getEventListener(std::string const& name) const {
  return findByName(m_impl->listeners, name);
}

zor::RealVector Simulation::getState() const {
  return m_impl->state();
}

// FNV-1a over the bytes.
zor::UInt Simulation::getStateHash() const {
  zor::UInt hash = 0xCBF29CE484222325;
  for (zor::Real const number : m_impl->state())
    for (std::uint64_t bits = std::bit_cast<std::uint64_t>(number), byte = 0; byte < 8; ++byte, bits >>= 8)
      hash = (hash ^ (bits & 0xFF)) * 0x100000001B3;
  return hash;
}

SimulationStatistics Simulation::getStatistics() const {
  return m_impl->statistics();
}

void Simulation::cleanup() {
  m_impl->cleanup();
}

} // namespace zorSDK
