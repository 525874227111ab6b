#include <algorithm>

#include "particles/ParticleSystemImpl.h"
#include "zorStream/Fields.h"
#include "zorStream/StateAccess.h"

// Particle systems, and what their engines remember.

namespace zorStream {

using zorParticles::EngineMemory;
using zorParticles::Float3;
using zorParticles::Impulse;
using zorParticles::PairContact;
using zorParticles::ParticleStore;
using zorParticles::ParticleSystemImpl;
using zorParticles::SensorContact;
using zorParticles::WallContact;

void StateAccess::particleSystem(Archive& archive, ObjectTables& tables, Ref<zor::ParticleSystem>& system) {
  using zor::ParticleSystem;
  if (archive.reading())
    system = new ParticleSystem;
  ParticleSystemImpl& impl = system->getImpl();
  property(archive, "name", static_cast<zor::Object&>(*system), &zor::Object::getName, &zor::Object::setName);
  field(archive, "enabled", impl.enabled);
  zor::Material* material = impl.material.get();
  reference(archive, "material", tables.materials, material);
  impl.material = material;
  property(archive, "color", *system, &ParticleSystem::getDefaultColor, &ParticleSystem::setDefaultColor);
  zor::UInt32Vector groups = impl.groups;
  listField(archive, "groups", groups);
  if (archive.reading())
    for (zor::UInt32 const group : groups)
      system->addGroup(group);
  property(archive, "rollingResistance", *system, &ParticleSystem::getRollingResistance,
           &ParticleSystem::setRollingResistance);
  property(archive, "subSteps", *system, &ParticleSystem::getNumSubSteps, &ParticleSystem::setNumSubSteps);
  property(archive, "threads", *system, &ParticleSystem::getNumThreads, &ParticleSystem::setNumThreads);
  std::vector<zor::Material*> materials;
  for (auto const& each : impl.materials)
    materials.push_back(each.get());
  references(archive, "materials", tables.materials, materials);
  impl.materials.assign(materials.begin(), materials.end());
  field(archive, "nextId", impl.m_nextId);
  particles(archive, impl);
  particleHistory(archive, tables, impl);
}

// --- particles

namespace {

void checkIds(Archive& archive, std::vector<std::uint64_t> const& ids, std::uint64_t next) {
  if (ids.size() > zorParticles::MOST_PARTICLES)
    archive.fail("id", "has more than " + std::to_string(zorParticles::MOST_PARTICLES) + " particles");
  for (std::size_t i = 0; i < ids.size(); ++i) {
    if (i > 0 && ids[i] <= ids[i - 1])
      archive.fail("id", "number " + std::to_string(i) + " is " + std::to_string(ids[i]) +
                             ", but they must ascend, each standing once");
    if (ids[i] >= next)
      archive.fail("id", std::to_string(ids[i]) + " is not less than nextId, " + std::to_string(next));
  }
}

// What a script has written into the arrays is taken as it is where a step would leave it out.
void checkRows(Archive& archive, ParticleStore const& store, std::size_t numMaterials) {
  auto const refuse = [&](char const* name, std::size_t i, char const* what) {
    archive.fail(name, std::string(what) + ", for particle " + std::to_string(i));
  };
  for (std::size_t i = 0; i < store.size(); ++i) {
    if (store.material[i] >= numMaterials)
      refuse("material", i, "is not in the list of materials");
    if (store.enabled[i] > 1)
      refuse("enabled", i, "is not 0 or 1");
    if (!(store.radius[i] > 0))
      refuse("radius", i, "is not larger than zero");
    if (!(store.mass[i] >= 0))
      refuse("mass", i, "is negative or no number");
    if (store.enabled[i] && !store.isSane(i))
      refuse(nullptr, i, "a number that moves it is not finite or out of bounds");
  }
}

} // namespace

void StateAccess::particles(Archive& archive, ParticleSystemImpl& impl) {
  ParticleStore& store = impl.store;
  archive.beginObject("particles");
  std::vector<std::uint64_t> ids(store.id.data(), store.id.data() + store.size());
  numbersField(archive, "id", ids); // one each, so that their number is that of the file
  std::size_t const count = ids.size();
  if (archive.reading()) {
    checkIds(archive, ids, impl.m_nextId);
    store.resize(count);
    std::copy(ids.begin(), ids.end(), store.id.data());
  }
  column<double>(archive, "position", store.position.data(), count);
  column<double>(archive, "velocity", store.velocity.data(), count);
  column<double>(archive, "angularVelocity", store.angularVelocity.data(), count);
  column<double>(archive, "force", store.force.data(), count);
  column<double>(archive, "rotation", store.rotation.data(), count);
  column<float>(archive, "color", store.color.data(), count);
  column<double>(archive, "radius", store.radius.data(), count);
  column<double>(archive, "mass", store.mass.data(), count);
  column<double>(archive, "lifetime", store.lifetime.data(), count);
  column<std::uint32_t>(archive, "material", store.material.data(), count);
  std::vector<std::uint8_t> enabled(count);
  for (std::size_t i = 0; i < count; ++i) // those that the next step would switch off are
    enabled[i] = store.enabled[i] && (archive.reading() || store.isSane(i));
  column<std::uint8_t>(archive, "enabled", enabled.data(), count);
  if (archive.reading()) {
    std::copy(enabled.begin(), enabled.end(), store.enabled.data());
    checkRows(archive, store, impl.materials.size());
  }
  archive.endObject();
}

// --- the engine's memory

namespace {

// A quantity that stands inside each row. \param of - gives a reference to it
template <class Number, class Rows, class Of>
void memberColumn(Archive& archive, char const* name, Rows& rows, Of of) {
  std::vector<std::remove_cvref_t<decltype(of(rows[0]))>> values;
  for (auto& row : rows)
    values.push_back(of(row));
  column<Number>(archive, name, values.data(), values.size());
  for (std::size_t i = 0; i < rows.size(); ++i)
    of(rows[i]) = values[i];
}

// The first particle of each contact, which tells how many there are.
template <class Contact>
void firstColumn(Archive& archive, std::vector<Contact>& contacts) {
  std::vector<std::uint32_t> first;
  for (Contact const& contact : contacts)
    first.push_back(contact.first);
  numbersField(archive, "first", first);
  contacts.resize(first.size());
  for (std::size_t i = 0; i < first.size(); ++i)
    contacts[i].first = first[i];
}

template <class Contact>
void impulseColumns(Archive& archive, std::vector<Contact>& contacts) {
  memberColumn<float>(archive, "total", contacts, [](Contact& c) -> float& { return c.total; });
  memberColumn<float>(archive, "impulse", contacts, [](Contact& c) -> float& { return c.impulse.normal; });
  memberColumn<float>(archive, "friction", contacts,
                      [](Contact& c) -> Float3& { return c.impulse.friction; });
  memberColumn<float>(archive, "rolling", contacts, [](Contact& c) -> Float3& { return c.impulse.rolling; });
}

void pairsField(Archive& archive, char const* name, std::vector<PairContact>& pairs) {
  archive.beginObject(name);
  firstColumn(archive, pairs);
  memberColumn<std::uint32_t>(archive, "second", pairs,
                              [](PairContact& c) -> std::uint32_t& { return c.second; });
  memberColumn<float>(archive, "between", pairs, [](PairContact& c) -> Float3& { return c.between; });
  impulseColumns(archive, pairs);
  archive.endObject();
}

template <class Contact>
void surfaceColumns(Archive& archive, std::vector<Contact>& contacts) {
  firstColumn(archive, contacts);
  memberColumn<std::uint32_t>(archive, "collider", contacts,
                              [](Contact& c) -> std::uint32_t& { return c.collider; });
  memberColumn<float>(archive, "normal", contacts, [](Contact& c) -> Float3& { return c.normal; });
  memberColumn<float>(archive, "gap", contacts, [](Contact& c) -> float& { return c.gap; });
}

void wallsField(Archive& archive, char const* name, std::vector<WallContact>& walls) {
  archive.beginObject(name);
  surfaceColumns(archive, walls);
  memberColumn<float>(archive, "velocity", walls, [](WallContact& c) -> Float3& { return c.velocity; });
  impulseColumns(archive, walls);
  archive.endObject();
}

void memoryFields(Archive& archive, ObjectTables& tables, EngineMemory& memory) {
  field(archive, "step", memory.step);
  field(archive, "subStep", memory.subStep);
  numbersField(archive, "order", memory.order);
  memory.moved.resize(memory.order.size());
  memory.radii.resize(memory.order.size());
  column<float>(archive, "moved", memory.moved.data(), memory.moved.size());
  column<float>(archive, "radius", memory.radii.data(), memory.radii.size());
  numbersField(archive, "slabEnds", memory.slabEnds);
  pairsField(archive, "inside", memory.inside);
  pairsField(archive, "across", memory.across);
  wallsField(archive, "walls", memory.walls);
  wallsField(archive, "bodies", memory.bodies);
  archive.beginObject("sensors");
  surfaceColumns(archive, memory.sensors);
  archive.endObject();
  listOfObjects(archive, "colliders", memory.colliders, [&](EngineMemory::Part& part) {
    reference(archive, "geometry", tables.geometries, part.geometry, true);
    field(archive, "part", part.part);
  });
  listOfObjects(archive, "expected", memory.expected, [&](EngineMemory::Expected& each) {
    reference(archive, "body", tables.bodies, each.body);
    field(archive, "velocity", each.velocity);
    field(archive, "spin", each.spin);
    field(archive, "load", each.load);
    field(archive, "twist", each.twist);
  });
}

// Leaves out what is not in the file, and puts the rest into an order without addresses.
void tidy(EngineMemory& memory, ObjectTables const& tables) {
  for (EngineMemory::Part& part : memory.colliders)
    if (part.geometry && !tables.geometries.contains(*part.geometry))
      part.geometry = nullptr;
  std::erase_if(memory.expected, [&](auto const& each) { return !tables.bodies.contains(*each.body); });
  std::sort(memory.expected.begin(), memory.expected.end(), [&](auto const& a, auto const& b) {
    return tables.bodies.idOf(*a.body) < tables.bodies.idOf(*b.body);
  });
}

} // namespace

void StateAccess::particleHistory(Archive& archive, ObjectTables& tables, ParticleSystemImpl& impl) {
  if (!archive.optional("history", impl.m_engine.lastStep() > 0))
    return;
  EngineMemory memory = impl.m_engine.memory();
  if (!archive.reading())
    tidy(memory, tables);
  archive.beginObject("history");
  memoryFields(archive, tables, memory);
  if (archive.reading())
    checked(archive, nullptr, [&] { impl.m_engine.restore(memory, impl.store.size()); });
  archive.endObject();
}

} // namespace zorStream
