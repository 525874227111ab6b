#include "zorStream/Entering.h"

#include <algorithm>
#include <unordered_set>

#include "bullet/BodyImpl.h"
#include "bullet/SpaceImpl.h"
#include "zorSDK/SimulationImpl.h"

namespace zorStream {

using zorSDK::Assembly;
using zorSDK::Simulation;

namespace {

bool isEmpty(Simulation const& simulation) {
  return simulation.getRigidBodies().empty() && simulation.getGeometries().empty() &&
         simulation.getConstraints().empty() && simulation.getParticleSystems().empty() &&
         simulation.getEmitters().empty();
}

/** Brings the end of a list into an order. The objects are held elsewhere, too. */
template <class T>
void arrangeEnd(zor::Vector<zor::ref_ptr<T>>& list, std::vector<T*> const& order) {
  std::size_t const first = list.size() - order.size();
  for (std::size_t i = 0; i < order.size(); ++i)
    list[first + i] = order[i];
}

void collectAssemblies(Assembly& assembly, std::vector<Assembly*>& all) {
  all.push_back(&assembly);
  for (auto const& nested : assembly.getAssemblies())
    collectAssemblies(*nested, all);
}

std::vector<Assembly*> allAssemblies(std::vector<Assembly*> const& top) {
  std::vector<Assembly*> all;
  for (Assembly* assembly : top)
    collectAssemblies(*assembly, all);
  return all;
}

template <class T>
void removeAll(zor::Vector<zor::ref_ptr<T>>& from, std::vector<T*> const& objects) {
  std::unordered_set<T const*> const gone(objects.begin(), objects.end());
  from.erase(
      std::remove_if(from.begin(), from.end(), [&](auto const& each) { return gone.contains(each.get()); }),
      from.end());
}

} // namespace

void StateAccess::Entering::enter(zor::UInt selection) {
  bool const objects = selection & Simulation::READ_OBJECTS;
  bool const newParent = objects && m_parent && !m_parent->getSimulation();
  bool const wasEmpty = isEmpty(m_simulation);
  Settings const before = Settings::of(m_simulation);
  History const worldBefore = objects && wasEmpty ? History::of(m_simulation, m_file.m_tables) : History();
  if (newParent)
    m_simulation.add(m_parent);
  bool const alone = isEmpty(m_simulation);
  if (selection & Simulation::READ_SETTINGS)
    m_file.m_settings.apply(m_simulation, alone);
  if (objects)
    addObjects();
  try {
    if (objects && alone && m_file.m_hasHistory)
      m_file.m_history.apply(m_simulation);
  } catch (std::logic_error const& error) {
    removeObjects();
    if (newParent)
      m_simulation.remove(m_parent);
    if (selection & Simulation::READ_SETTINGS)
      before.apply(m_simulation, true);
    if (wasEmpty)
      worldBefore.apply(m_simulation); // numbers start where they started
    throw ArchiveError(std::string("history: ") + error.what() +
                       "; without this member the file can be read, and its contacts start anew");
  }
  if (selection & Simulation::READ_MATERIALS)
    addMaterials();
  if (selection & Simulation::READ_TIME)
    m_file.m_clock.apply(m_simulation);
}

void StateAccess::Entering::addMaterials() {
  Contents const& contents = m_file.m_contents;
  for (zor::Material* material : contents.materials)
    if (material != zorBullet::GeometryImpl::defaultMaterial() ||
        !m_simulation.getMaterial(material->getName()))
      m_simulation.add(material);
  zorBullet::SpaceImpl& space = m_simulation.getSpace()->getImpl();
  for (zor::ContactMaterial* material : contents.contactMaterials) {
    m_simulation.add(material);
    space.removeContactMaterial(*material); // those that count follow
  }
  for (zor::ContactMaterial* material : contents.usedContactMaterials)
    space.addContactMaterial(*material);
}

// Objects enter one by one, in the order that they had; assemblies find theirs inside.
void StateAccess::Entering::addObjects() {
  Contents const& contents = m_file.m_contents;
  for (zor::RigidBody* body : contents.bodies)
    m_simulation.add(body);
  for (zorCollide::Geometry* geometry : contents.geometries)
    if (!geometry->getRigidBody())
      m_simulation.add(geometry);
  for (zor::Constraint* constraint : contents.constraints)
    m_simulation.add(constraint);
  for (zor::ObserverFrame* frame : contents.observerFrames)
    m_simulation.add(frame);
  for (zor::ParticleSystem* system : contents.particleSystems)
    m_simulation.add(system);
  for (zor::EmitterBase* emitter : contents.emitters)
    m_simulation.add(emitter);
  arrangeEnd(m_simulation.getSpace()->m_geometries, contents.geometries);
  for (Assembly* assembly : allAssemblies(contents.assemblies))
    assembly->m_simulation = &m_simulation;
  if (m_parent)
    addToParent();
  else
    for (Assembly* assembly : contents.assemblies)
      implOf(m_simulation).assemblies.push_back(assembly);
  applyMotions();
}

// To enter wakes bodies, and those that they touch.
void StateAccess::Entering::applyMotions() {
  for (std::size_t i = 0; i < m_file.m_motions.size(); ++i)
    m_file.m_motions[i].apply(m_file.m_tables.bodies.objects()[i]->getImpl().engine());
}

void StateAccess::Entering::addToParent() {
  std::unordered_set<zor::Referenced const*> taken; // by assemblies of their own
  auto const take = [&](auto const& list) {
    for (auto const& object : list)
      taken.insert(object.get());
  };
  for (auto const& assembly : m_file.m_tables.assemblies.objects()) {
    take(assembly->m_bodies);
    take(assembly->m_geometries);
    take(assembly->m_constraints);
    take(assembly->m_frames);
  }
  auto const give = [&](auto const& objects, auto& list) {
    for (auto* object : objects)
      if (!taken.contains(object))
        list.push_back(object);
  };
  Contents const& contents = m_file.m_contents;
  std::vector<zorCollide::Geometry*> free = contents.geometries;
  std::erase_if(free, [](auto const* geometry) { return geometry->getRigidBody() != nullptr; });
  give(contents.bodies, m_parent->m_bodies);
  give(free, m_parent->m_geometries);
  give(contents.constraints, m_parent->m_constraints);
  give(contents.observerFrames, m_parent->m_frames);
  for (Assembly* assembly : contents.assemblies) {
    m_parent->m_assemblies.push_back(assembly);
    assembly->m_parent = m_parent;
  }
}

void StateAccess::Entering::removeFromParent() {
  Contents const& contents = m_file.m_contents;
  removeAll(m_parent->m_bodies, contents.bodies);
  removeAll(m_parent->m_geometries, contents.geometries);
  removeAll(m_parent->m_constraints, contents.constraints);
  removeAll(m_parent->m_frames, contents.observerFrames);
  removeAll(m_parent->m_assemblies, contents.assemblies);
  for (Assembly* assembly : contents.assemblies)
    assembly->m_parent = nullptr;
}

void StateAccess::Entering::removeObjects() {
  Contents const& contents = m_file.m_contents;
  if (m_parent)
    removeFromParent();
  removeAll(implOf(m_simulation).assemblies, contents.assemblies);
  for (Assembly* assembly : allAssemblies(contents.assemblies))
    assembly->m_simulation = nullptr;
  for (zor::Constraint* constraint : contents.constraints)
    m_simulation.remove(constraint);
  for (zor::RigidBody* body : contents.bodies)
    m_simulation.remove(body);
  for (zorCollide::Geometry* geometry : contents.geometries)
    m_simulation.remove(geometry);
  for (zor::ObserverFrame* frame : contents.observerFrames)
    m_simulation.remove(frame);
  for (zor::ParticleSystem* system : contents.particleSystems)
    m_simulation.remove(system);
  for (zor::EmitterBase* emitter : contents.emitters)
    m_simulation.remove(emitter);
}

} // namespace zorStream
