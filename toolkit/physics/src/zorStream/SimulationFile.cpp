#include "zorStream/SimulationFile.h"

#include <algorithm>
#include <unordered_set>

#include "bullet/BodyImpl.h"
#include "bullet/SpaceImpl.h"
#include "zorSDK/SimulationImpl.h"
#include "zorStream/BinaryArchive.h"
#include "zorStream/Collector.h"
#include "zorStream/Entering.h"
#include "zorStream/Fields.h"
#include "zorStream/JsonArchive.h"

namespace zorStream {

using zorBullet::MotionState;
using zorSDK::Assembly;
using zorSDK::Simulation;

// The whole file, in both directions.
void SimulationFile::describe(Archive& archive) {
  using Access = StateAccess;
  ObjectTables& tables = m_tables;
  m_settings.describe(archive);
  m_clock.describe(archive);
  tableField(archive, "materials", tables.materials, [&](auto& each) { Access::material(archive, each); });
  tableField(archive, "contactMaterials", tables.contactMaterials,
             [&](auto& each) { Access::contactMaterial(archive, tables, each); });
  tableField(archive, "renderMaterials", tables.renderMaterials,
             [&](auto& each) { Access::renderMaterial(archive, each); });
  tableField(archive, "renderData", tables.renderData,
             [&](auto& each) { Access::renderData(archive, tables, each); });
  tableField(archive, "shapes", tables.shapes, [&](auto& each) { Access::shape(archive, tables, each); });
  tableField(archive, "geometries", tables.geometries,
             [&](auto& each) { Access::geometry(archive, tables, each); });
  describeBodies(archive);
  tableField(archive, "constraints", tables.constraints,
             [&](auto& each) { Access::constraint(archive, tables, each); });
  tableField(archive, "observerFrames", tables.observerFrames,
             [&](auto& each) { Access::observerFrame(archive, tables, each); });
  tableField(archive, "assemblies", tables.assemblies,
             [&](auto& each) { Access::assembly(archive, tables, each); });
  tableField(archive, "frames", tables.frames, [&](auto& each) { Access::frame(archive, tables, each); });
  if (archive.version() >= 2)
    describeParticles(archive);
  m_contents.describe(archive, tables);
  m_hasHistory = archive.optional("history", m_hasHistory);
  if (m_hasHistory)
    m_history.describe(archive, tables);
}

void SimulationFile::describeBodies(Archive& archive) {
  std::size_t next = 0;
  tableField(archive, "bodies", m_tables.bodies, [&](auto& body) {
    MotionState motion = body ? MotionState::of(body->getImpl().engine()) : MotionState();
    StateAccess::body(archive, m_tables, body, motion);
    m_motions.resize(next + 1);
    m_motions[next++] = motion;
  });
}

void SimulationFile::describeParticles(Archive& archive) {
  using Access = StateAccess;
  ObjectTables& tables = m_tables;
  tableField(archive, "particleModels", tables.particleModels,
             [&](auto& each) { Access::particleModel(archive, tables, each); });
  tableField(archive, "particleDistributions", tables.particleDistributions,
             [&](auto& each) { Access::particleDistribution(archive, tables, each); });
  tableField(archive, "bodyDistributions", tables.bodyDistributions,
             [&](auto& each) { Access::bodyDistribution(archive, tables, each); });
  tableField(archive, "particleSystems", tables.particleSystems,
             [&](auto& each) { Access::particleSystem(archive, tables, each); });
  tableField(archive, "emitters", tables.emitters,
             [&](auto& each) { Access::emitter(archive, tables, each); });
}

std::string SimulationFile::write(Simulation& simulation, bool json) {
  SimulationFile file;
  file.m_settings = StateAccess::Settings::of(simulation);
  file.m_clock = StateAccess::Clock::of(simulation);
  file.m_contents = StateAccess::Contents::of(simulation);
  Collector(file.m_tables).collect(file.m_contents);
  file.m_hasHistory = true;
  file.m_history = StateAccess::History::of(simulation, file.m_tables);
  if (json) {
    JsonWriter writer(FORMAT_VERSION);
    file.describe(writer);
    return writer.finish();
  }
  BinaryWriter writer(FORMAT_VERSION);
  file.describe(writer);
  return writer.finish();
}

SimulationFile::SimulationFile(std::string_view bytes) {
  if (JsonReader::recognises(bytes)) {
    JsonReader reader(bytes, FORMAT_VERSION);
    describe(reader);
    reader.finish();
  } else {
    BinaryReader reader(bytes, FORMAT_VERSION);
    describe(reader);
    reader.finish();
  }
  StateAccess::setParents(m_tables);
  checkContents();
}

// What could only half be added.
void SimulationFile::checkContents() const {
  std::unordered_set<zorCollide::Geometry const*> own;
  for (zorCollide::Geometry const* geometry : m_contents.geometries)
    own.insert(geometry);
  std::size_t ofBodies = 0;
  for (zor::RigidBody const* body : m_contents.bodies)
    for (auto const& geometry : body->getGeometries()) {
      ++ofBodies;
      if (!own.contains(geometry.get()))
        throw ArchiveError("contents.geometries: those of body '" + body->getName() + "' are missing");
    }
  auto const free = std::count_if(m_contents.geometries.begin(), m_contents.geometries.end(),
                                  [](auto const* geometry) { return !geometry->getRigidBody(); });
  if (ofBodies + static_cast<std::size_t>(free) != m_contents.geometries.size())
    throw ArchiveError("contents.geometries: one belongs to a body that is not there");
  for (Assembly const* assembly : m_contents.assemblies)
    if (assembly->getParent())
      throw ArchiveError("contents.assemblies: '" + assembly->getName() + "' is part of another assembly");
}

void SimulationFile::addTo(Simulation& simulation, Assembly* parent, zor::UInt selection) {
  StateAccess::Entering(simulation, parent, *this).enter(selection);
}

} // namespace zorStream
