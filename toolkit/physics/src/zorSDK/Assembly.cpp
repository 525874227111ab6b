#include <zorSDK/Assembly.h>

#include <algorithm>
#include <stdexcept>

#include <zor/Notify.h>
#include <zorSDK/Simulation.h>

#include "zor/Checks.h"
#include "zorSDK/SimulationImpl.h"

namespace zorSDK {

namespace {

template <class T>
auto find(zor::Vector<zor::ref_ptr<T>> const& in, T const& object) {
  return std::find_if(in.begin(), in.end(), [&](auto const& each) { return each.get() == &object; });
}

template <class T>
bool addTo(zor::Vector<zor::ref_ptr<T>>& to, T* object, Simulation* simulation) {
  zor::checkNotNull(object, "Assembly::add");
  if (find(to, *object) != to.end()) {
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "Assembly::add: '" << object->getName() << "' is already in the assembly, nothing is changed"
        << zor::endMessage;
    return false;
  }
  to.push_back(object);
  if (simulation)
    simulation->add(object);
  return true;
}

template <class T>
bool removeFrom(zor::Vector<zor::ref_ptr<T>>& from, T* object, Simulation* simulation) {
  auto const at = find(from, zor::checkNotNull(object, "Assembly::remove"));
  if (at == from.end())
    return false;
  zor::ref_ptr<T> const keep = object;
  from.erase(at);
  if (simulation)
    simulation->remove(object);
  return true;
}

// The first of the given name in one list of an assembly or of those nested in it.
template <class T>
T* findByPlainName(Assembly const& assembly, zor::Vector<zor::ref_ptr<T>> const& (Assembly::*list)() const,
                   std::string const& name) {
  for (auto const& each : (assembly.*list)())
    if (each->getName() == name)
      return each.get();
  for (auto const& nested : assembly.getAssemblies())
    if (T* found = findByPlainName(*nested, list, name))
      return found;
  return nullptr;
}

// By name, else by a path through nested assemblies, whose own names may hold slashes.
template <class T>
T* findByName(Assembly const& assembly, zor::Vector<zor::ref_ptr<T>> const& (Assembly::*list)() const,
              std::string const& name) {
  if (T* found = findByPlainName(assembly, list, name))
    return found;
  for (auto const& nested : assembly.getAssemblies()) {
    std::string const& first = nested->getName();
    if (name.size() > first.size() && name[first.size()] == '/' && name.starts_with(first))
      if (T* found = findByName(*nested, list, name.substr(first.size() + 1)))
        return found;
  }
  return nullptr;
}

} // namespace

Assembly::Assembly(std::string const& name) : Object(name), m_frame(new zor::Frame) {}

Assembly::~Assembly() {
  for (auto const& nested : m_assemblies)
    nested->m_parent = nullptr;
}

bool Assembly::add(zor::RigidBody* body) {
  return addTo(m_bodies, body, m_simulation);
}

bool Assembly::add(zorCollide::Geometry* geometry) {
  return addTo(m_geometries, geometry, m_simulation);
}

bool Assembly::add(zor::Constraint* constraint) {
  return addTo(m_constraints, constraint, m_simulation);
}

bool Assembly::add(zor::ObserverFrame* frame) {
  return addTo(m_frames, frame, m_simulation);
}

bool Assembly::add(EventListener* listener) {
  return addTo(m_listeners, listener, m_simulation);
}

bool Assembly::add(Assembly* assembly) {
  zor::checkNotNull(assembly, "Assembly::add");
  if (assembly->contains(this))
    throw std::invalid_argument("Assembly::add: assembly '" + assembly->getName() + "' would contain itself");
  if (assembly->m_parent || assembly->m_simulation) {
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "Assembly::add: assembly '" << assembly->getName()
        << "' is already in an assembly or a simulation, nothing is changed" << zor::endMessage;
    return false;
  }
  m_assemblies.push_back(assembly);
  assembly->m_parent = this;
  if (m_simulation)
    m_simulation->m_impl->enterAssembly(*assembly);
  return true;
}

bool Assembly::remove(zor::RigidBody* body) {
  return removeFrom(m_bodies, body, m_simulation);
}

bool Assembly::remove(zorCollide::Geometry* geometry) {
  return removeFrom(m_geometries, geometry, m_simulation);
}

bool Assembly::remove(zor::Constraint* constraint) {
  return removeFrom(m_constraints, constraint, m_simulation);
}

bool Assembly::remove(zor::ObserverFrame* frame) {
  return removeFrom(m_frames, frame, m_simulation);
}

bool Assembly::remove(EventListener* listener) {
  return removeFrom(m_listeners, listener, m_simulation);
}

bool Assembly::remove(Assembly* assembly) {
  zor::ref_ptr<Assembly> const keep = assembly;
  zor::checkNotNull(assembly, "Assembly::remove");
  auto const at = find(m_assemblies, *assembly);
  if (at == m_assemblies.end())
    return false;
  m_assemblies.erase(at);
  assembly->m_parent = nullptr;
  if (assembly->m_simulation)
    assembly->m_simulation->m_impl->leaveAssembly(*assembly);
  return true;
}

bool Assembly::contains(Assembly const* other) const {
  return other == this || std::any_of(m_assemblies.begin(), m_assemblies.end(),
                                      [&](auto const& nested) { return nested->contains(other); });
}

zor::RigidBodyRefVector const& Assembly::getRigidBodies() const {
  return m_bodies;
}

zorCollide::GeometryRefVector const& Assembly::getGeometries() const {
  return m_geometries;
}

zor::ConstraintRefVector const& Assembly::getConstraints() const {
  return m_constraints;
}

zor::ObserverFrameRefVector const& Assembly::getObserverFrames() const {
  return m_frames;
}

EventListenerRefVector const& Assembly::getListeners() const {
  return m_listeners;
}

AssemblyRefVector const& Assembly::getAssemblies() const {
  return m_assemblies;
}

zor::RigidBody* Assembly::getRigidBody(std::string const& name) const {
  return findByName(*this, &Assembly::getRigidBodies, name);
}

zorCollide::Geometry* Assembly::getGeometry(std::string const& name) const {
  return findByName(*this, &Assembly::getGeometries, name);
}

zor::Constraint* Assembly::getConstraint(std::string const& name) const {
  return findByName(*this, &Assembly::getConstraints, name);
}

zor::ObserverFrame* Assembly::getObserverFrame(std::string const& name) const {
  return findByName(*this, &Assembly::getObserverFrames, name);
}

Assembly* Assembly::getAssembly(std::string const& name) const {
  return findByName(*this, &Assembly::getAssemblies, name);
}

void Assembly::setPosition(zor::Vec3 const& position) {
  zor::checkFinite(position, "Assembly::setPosition");
  zor::AffineMatrix4x4 transform = getTransform();
  transform.setTranslate(position);
  setTransform(transform);
}

zor::Vec3 Assembly::getPosition() const {
  return m_frame->getTranslate();
}

void Assembly::setRotation(zor::Quat const& rotation) {
  zor::Quat unit = rotation;
  if (!rotation.isFinite() || !(unit.normalize() > 0))
    throw std::invalid_argument("Assembly::setRotation: the quaternion has no direction");
  setTransform(zor::AffineMatrix4x4(unit, getPosition()));
}

zor::Quat Assembly::getRotation() const {
  return m_frame->getRotate();
}

void Assembly::setTransform(zor::AffineMatrix4x4 const& transform) {
  zor::checkRigid(transform, "Assembly::setTransform");
  move(getTransform().inverse() * transform);
}

// Contents are told their world places, as bodies go their own ways; velocities turn along.
void Assembly::move(zor::AffineMatrix4x4 const& worldMotion) {
  for (auto const& body : m_bodies) {
    body->setTransform(body->getTransform() * worldMotion);
    body->setVelocity(worldMotion.transformVector(body->getVelocity()));
    body->setAngularVelocity(worldMotion.transformVector(body->getAngularVelocity()));
  }
  for (auto const& geometry : m_geometries)
    geometry->setTransform(geometry->getTransform() * worldMotion);
  for (auto const& frame : m_frames)
    if (!frame->getRigidBody())
      frame->setLocalTransform(frame->getTransform() * worldMotion);
  for (auto const& nested : m_assemblies)
    nested->move(worldMotion);
  m_frame->setMatrix(m_frame->getMatrix() * worldMotion);
}

zor::AffineMatrix4x4 Assembly::getTransform() const {
  return m_frame->getMatrix();
}

zor::Frame* Assembly::getFrame() {
  return m_frame.get();
}

zor::Frame const* Assembly::getFrame() const {
  return m_frame.get();
}

Assembly* Assembly::getParent() const {
  return m_parent;
}

Simulation* Assembly::getSimulation() const {
  return m_simulation;
}

} // namespace zorSDK
