#include <algorithm>
#include <cmath>

#include "bullet/Conversions.h"
#include "bullet/SpaceImpl.h"
#include "zorSDK/SimulationImpl.h"
#include "zorStream/Fields.h"
#include "zorStream/StateAccess.h"

// Assemblies, and what a simulation itself has.

namespace zorStream {

using zorBullet::WorldState;
using zorSDK::Assembly;
using zorSDK::Simulation;

void StateAccess::assembly(Archive& archive, ObjectTables& tables, Ref<Assembly>& assembly) {
  if (archive.reading())
    assembly = new Assembly;
  property(archive, "name", static_cast<zor::Object&>(*assembly), &zor::Object::getName,
           &zor::Object::setName);
  ownFrame(archive, tables, "frame", *assembly->m_frame, nullptr);
  auto const members = [&](char const* name, auto const& table, auto const& present) {
    auto objects = pointers(present);
    references(archive, name, table, objects);
    if (archive.reading())
      for (auto* object : objects)
        checked(archive, name, [&] {
          if (!assembly->add(object))
            archive.fail(name, "an object stands twice, or is in another assembly");
        });
  };
  members("bodies", tables.bodies, assembly->m_bodies);
  members("geometries", tables.geometries, assembly->m_geometries);
  members("constraints", tables.constraints, assembly->m_constraints);
  members("observerFrames", tables.observerFrames, assembly->m_frames);
  members("assemblies", tables.assemblies, assembly->m_assemblies);
}

// --- settings and time

StateAccess::Settings StateAccess::Settings::of(Simulation& simulation) {
  Settings settings{
      simulation.getName(),        simulation.getUniformGravity(),      simulation.getTimeStep(),
      simulation.getNumSubSteps(), simulation.getNumSolverIterations(), simulation.getEnableAutoSleep(),
      simulation.getSolverType(),  simulation.getSolverTolerance(),     {}};
  auto const& groups = simulation.getSpace()->getImpl().m_disabledGroups;
  settings.disabledGroups.assign(groups.begin(), groups.end());
  return settings;
}

void StateAccess::Settings::describe(Archive& archive) {
  archive.beginObject("settings");
  field(archive, "name", name);
  field(archive, "gravity", gravity);
  field(archive, "timeStep", timeStep);
  field(archive, "subSteps", subSteps);
  field(archive, "solverIterations", iterations);
  field(archive, "autoSleep", autoSleep);
  if (archive.version() >= 2) {
    choice<Simulation::SolverType>(archive, "solver", solver,
                                   {{"sequential impulses", Simulation::SEQUENTIAL_IMPULSES},
                                    {"conjugate gradient", Simulation::CONJUGATE_GRADIENT}});
    field(archive, "solverTolerance", tolerance);
  }
  listOfObjects(archive, "disabledGroups", disabledGroups, [&](auto& pair) {
    field(archive, "group1", pair.first);
    field(archive, "group2", pair.second);
  });
  if (archive.reading())
    check(archive);
  archive.endObject();
}

// Before anything is changed; the setters would refuse the same.
void StateAccess::Settings::check(Archive& archive) const {
  if (!gravity.isFinite())
    archive.fail("gravity", "is not finite");
  if (!(timeStep > 0) || !std::isfinite(timeStep))
    archive.fail("timeStep", "must be finite and larger than zero");
  if (subSteps < 1 || subSteps > 100)
    archive.fail("subSteps", "must be 1 to 100");
  if (iterations < 1 || iterations > 10000)
    archive.fail("solverIterations", "must be 1 to 10000");
  if (!(tolerance >= 0) || !std::isfinite(tolerance))
    archive.fail("solverTolerance", "must be finite and not negative");
}

void StateAccess::Settings::apply(Simulation& simulation, bool replace) const {
  simulation.setName(name);
  if (!(simulation.getUniformGravity() == gravity)) // wakes all bodies
    simulation.setUniformGravity(gravity);
  if (simulation.getTimeStep() != timeStep)
    simulation.setTimeStep(timeStep);
  simulation.setNumSubSteps(subSteps);
  simulation.setNumSolverIterations(iterations);
  if (simulation.getSolverType() != solver)
    simulation.setSolverType(solver);
  simulation.setSolverTolerance(tolerance);
  if (simulation.getEnableAutoSleep() != autoSleep)
    simulation.setEnableAutoSleep(autoSleep);
  zorCollide::Space& space = *simulation.getSpace();
  if (replace) {
    auto const present = space.getImpl().m_disabledGroups;
    for (auto const& [first, second] : present)
      space.setEnablePair(first, second, true);
  }
  for (auto const& [first, second] : disabledGroups)
    space.setEnablePair(first, second, false);
}

StateAccess::Clock StateAccess::Clock::of(Simulation& simulation) {
  zorSDK::SimulationImpl const& impl = implOf(simulation);
  return Clock{impl.m_startTime, impl.m_stepsSinceStart, impl.m_statistics.steps};
}

void StateAccess::Clock::describe(Archive& archive) {
  archive.beginObject("time");
  field(archive, "start", start);
  field(archive, "stepsSinceStart", stepsSinceStart);
  field(archive, "steps", steps);
  if (archive.reading() && !std::isfinite(start))
    archive.fail("start", "is not finite");
  archive.endObject();
}

void StateAccess::Clock::apply(Simulation& simulation) const {
  zorSDK::SimulationImpl& impl = implOf(simulation);
  impl.m_startTime = start;
  impl.m_stepsSinceStart = stepsSinceStart;
  impl.m_statistics.steps = steps;
}

// --- contents

StateAccess::Contents StateAccess::Contents::of(Simulation& simulation) {
  Contents contents;
  contents.materials = pointers(simulation.getMaterials());
  contents.contactMaterials = pointers(simulation.getContactMaterials());
  contents.bodies = pointers(simulation.getRigidBodies());
  contents.geometries = pointers(simulation.getGeometries());
  contents.constraints = pointers(simulation.getConstraints());
  contents.observerFrames = pointers(simulation.getObserverFrames());
  contents.assemblies = pointers(simulation.getAssemblies());
  contents.particleSystems = pointers(simulation.getParticleSystems());
  contents.emitters = pointers(simulation.getEmitters());
  for (auto const& entry : simulation.getSpace()->getImpl().m_contactMaterials)
    contents.usedContactMaterials.push_back(entry.second.get());
  return contents;
}

void StateAccess::Contents::describe(Archive& archive, ObjectTables& tables) {
  archive.beginObject("contents");
  auto const list = [&](char const* name, auto const& table, auto& objects) {
    references(archive, name, table, objects);
    auto sorted = objects;
    std::sort(sorted.begin(), sorted.end());
    if (archive.reading() && std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end())
      archive.fail(name, "an object stands twice");
  };
  if (!archive.reading()) // the space keeps them by address
    std::sort(usedContactMaterials.begin(), usedContactMaterials.end(), [&](auto* a, auto* b) {
      return tables.contactMaterials.idOf(*a) < tables.contactMaterials.idOf(*b);
    });
  list("materials", tables.materials, materials);
  list("contactMaterials", tables.contactMaterials, contactMaterials);
  list("usedContactMaterials", tables.contactMaterials, usedContactMaterials);
  list("bodies", tables.bodies, bodies);
  list("geometries", tables.geometries, geometries);
  list("constraints", tables.constraints, constraints);
  list("observerFrames", tables.observerFrames, observerFrames);
  list("assemblies", tables.assemblies, assemblies);
  if (archive.version() >= 2) {
    list("particleSystems", tables.particleSystems, particleSystems);
    list("emitters", tables.emitters, emitters);
  }
  archive.endObject();
}

// --- history

namespace {

void boxField(Archive& archive, char const* name, zorBullet::ProxyState& proxy) {
  archive.beginObject(name);
  field(archive, "number", proxy.id);
  field(archive, "lower", proxy.lower);
  field(archive, "upper", proxy.upper);
  field(archive, "leafLower", proxy.leafLower);
  field(archive, "leafUpper", proxy.leafUpper);
  field(archive, "stage", proxy.stage);
  archive.endObject();
}

void objectField(Archive& archive, ObjectTables& tables, WorldState::Object& object) {
  bool own = object.geometry != nullptr;
  field(archive, "ownObject", own);
  if (own) {
    reference(archive, "geometry", tables.geometries, object.geometry);
    field(archive, "pose", object.motion.pose);
    field(archive, "foreseenPose", object.motion.foreseenPose);
    field(archive, "foreseenVelocity", object.motion.foreseenVelocity);
    field(archive, "foreseenSpin", object.motion.foreseenSpin);
    field(archive, "activation", object.motion.activation);
    field(archive, "timeAtRest", object.motion.timeAtRest);
    if (object.motion.activation < ACTIVE_TAG || object.motion.activation > DISABLE_SIMULATION)
      archive.fail("activation", "is unknown");
  } else {
    reference(archive, "body", tables.bodies, object.body);
  }
  boxField(archive, "box", object.proxy);
}

void broadphaseField(Archive& archive, zorBullet::BroadphaseState& state) {
  archive.beginObject("boxes");
  field(archive, "lastNumber", state.lastId);
  field(archive, "cleanUpAt", state.cleanUpAt);
  field(archive, "parseId", state.parseId);
  field(archive, "newPairs", state.newPairs);
  field(archive, "fixedLeft", state.fixedLeft);
  field(archive, "stage", state.stage);
  field(archive, "updatesCalled", state.updatesCalled);
  field(archive, "updatesDone", state.updatesDone);
  field(archive, "updatesRatio", state.updatesRatio);
  field(archive, "needsCleanUp", state.needsCleanUp);
  archive.endObject();
}

void pairField(Archive& archive, WorldState::Pair& pair) {
  field(archive, "first", pair.first);
  field(archive, "second", pair.second);
  field(archive, "known", pair.known);
  listOfObjects(archive, "leaves", pair.leaves, [&](WorldState::Leaves& leaves) {
    field(archive, "first", leaves.first);
    field(archive, "second", leaves.second);
    field(archive, "manifold", leaves.manifold);
  });
}

void pointField(Archive& archive, ObjectTables& tables, WorldState::Point& state) {
  btManifoldPoint& point = state.point;
  reference(archive, "geometry1", tables.geometries, state.first, true);
  reference(archive, "geometry2", tables.geometries, state.second, true);
  field(archive, "localOnFirst", point.m_localPointA);
  field(archive, "localOnSecond", point.m_localPointB);
  field(archive, "onFirst", point.m_positionWorldOnA);
  field(archive, "onSecond", point.m_positionWorldOnB);
  field(archive, "normal", point.m_normalWorldOnB);
  field(archive, "distance", point.m_distance1);
  field(archive, "friction", point.m_combinedFriction);
  field(archive, "rollingFriction", point.m_combinedRollingFriction);
  field(archive, "spinningFriction", point.m_combinedSpinningFriction);
  field(archive, "restitution", point.m_combinedRestitution);
  field(archive, "part1", point.m_partId0);
  field(archive, "part2", point.m_partId1);
  field(archive, "index1", point.m_index0);
  field(archive, "index2", point.m_index1);
  field(archive, "flags", point.m_contactPointFlags);
  field(archive, "impulse", point.m_appliedImpulse);
  field(archive, "previousSide", point.m_prevRHS);
  field(archive, "lateralImpulse1", point.m_appliedImpulseLateral1);
  field(archive, "lateralImpulse2", point.m_appliedImpulseLateral2);
  field(archive, "motion1", point.m_contactMotion1);
  field(archive, "motion2", point.m_contactMotion2);
  field(archive, "yielding", point.m_contactCFM);   // or stiffness, as the flags say
  field(archive, "correction", point.m_contactERP); // or damping
  field(archive, "frictionYielding", point.m_frictionCFM);
  field(archive, "age", point.m_lifeTime);
  field(archive, "lateral1", point.m_lateralFrictionDir1);
  field(archive, "lateral2", point.m_lateralFrictionDir2);
}

void manifoldField(Archive& archive, ObjectTables& tables, WorldState::Manifold& manifold) {
  field(archive, "first", manifold.first);
  field(archive, "second", manifold.second);
  field(archive, "breaking", manifold.breaking);
  field(archive, "processing", manifold.processing);
  listOfObjects(archive, "points", manifold.points,
                [&](WorldState::Point& point) { pointField(archive, tables, point); });
}

} // namespace

StateAccess::History StateAccess::History::of(Simulation& simulation, ObjectTables const& tables) {
  History history;
  history.world = WorldState::of(simulation.getSpace()->getImpl(), simulation.getConstraints());
  std::vector<zorSDK::SimulationImpl::Touch const*> known;
  for (auto const& entry : implOf(simulation).m_touches)
    known.push_back(&entry.second);
  // The simulation keeps them by address, and numbers them as they came.
  std::sort(known.begin(), known.end(), [](auto* a, auto* b) { return a->number < b->number; });
  for (auto const* each : known) {
    Touch const touch{each->geometry1.get(), each->geometry2.get()};
    if (tables.geometries.contains(*touch.first) && tables.geometries.contains(*touch.second))
      history.touches.push_back(touch);
  }
  return history;
}

void StateAccess::History::describe(Archive& archive, ObjectTables& tables) {
  archive.beginObject("history");
  listOfObjects(archive, "objects", world.objects,
                [&](WorldState::Object& object) { objectField(archive, tables, object); });
  listField(archive, "moving", world.moving);
  references(archive, "constraints", tables.constraints, world.constraints);
  references(archive, "ownObjects", tables.geometries, world.ownObjects);
  broadphaseField(archive, world.broadphase);
  listOfObjects(archive, "pairs", world.pairs, [&](WorldState::Pair& pair) { pairField(archive, pair); });
  listOfObjects(archive, "manifolds", world.manifolds,
                [&](WorldState::Manifold& manifold) { manifoldField(archive, tables, manifold); });
  listField(archive, "swept", world.swept);
  field(archive, "randomSeed", world.randomSeed);
  field(archive, "lastTimeStep", world.lastTimeStep);
  field(archive, "boxesAreOld", world.boxesAreOld);
  field(archive, "filtersChanged", world.filtersChanged);
  field(archive, "fixedObjectsMeet", world.fixedObjectsMeet);
  listOfObjects(archive, "touches", touches, [&](Touch& touch) {
    reference(archive, "geometry1", tables.geometries, touch.first);
    reference(archive, "geometry2", tables.geometries, touch.second);
  });
  archive.endObject();
}

void StateAccess::History::apply(Simulation& simulation) const {
  world.restore(simulation.getSpace()->getImpl(), simulation.getConstraints());
  zorSDK::SimulationImpl& impl = implOf(simulation);
  for (Touch const& touch : touches)
    impl.m_touches.try_emplace(std::minmax(touch.first, touch.second),
                               zorSDK::SimulationImpl::Touch{touch.first, touch.second, impl.m_numTouches++});
}

} // namespace zorStream
