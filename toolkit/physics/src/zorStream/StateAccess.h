#pragma once

#include <vector>

#include <zor/Emitter.h>
#include <zor/RigidBodyEmitter.h>
#include <zorSDK/Simulation.h>

#include "bullet/WorldState.h"
#include "zorStream/Archive.h"
#include "zorStream/ObjectTables.h"

namespace zorParticles {
class ParticleSystemImpl;
}

namespace zorStream {

/**
 * The descriptions of all classes that are stored: which fields they have, under what names and in which
 * order. The classes are befriended with it, as much of what they keep is nobody else's business.
 *
 * Each function writes an object, or makes one and reads it. A new field is one line, behind
 * `if (archive.version() >= n)` with n the next FORMAT_VERSION.
 */
struct StateAccess {
  template <class T>
  using Ref = zor::ref_ptr<T>;

  // --- objects
  static void material(Archive& archive, Ref<zor::Material>& material);
  static void contactMaterial(Archive& archive, ObjectTables& tables, Ref<zor::ContactMaterial>& material);
  static void renderMaterial(Archive& archive, Ref<zorRender::RenderMaterial>& material);
  static void renderData(Archive& archive, ObjectTables& tables, Ref<zorRender::RenderData>& data);
  static void shape(Archive& archive, ObjectTables& tables, Ref<zorCollide::Shape>& shape);
  static void geometry(Archive& archive, ObjectTables& tables, Ref<zorCollide::Geometry>& geometry);
  static void body(Archive& archive, ObjectTables& tables, Ref<zor::RigidBody>& body,
                   zorBullet::MotionState& motion);
  static void constraint(Archive& archive, ObjectTables& tables, Ref<zor::Constraint>& constraint);
  static void observerFrame(Archive& archive, ObjectTables& tables, Ref<zor::ObserverFrame>& frame);
  static void assembly(Archive& archive, ObjectTables& tables, Ref<zorSDK::Assembly>& assembly);
  static void frame(Archive& archive, ObjectTables& tables, Ref<zor::Frame>& frame);
  static void particleModel(Archive& archive, ObjectTables& tables, Ref<zor::ParticleModel>& model);
  static void particleDistribution(Archive& archive, ObjectTables& tables,
                                   Ref<zor::ParticleDistribution>& distribution);
  static void bodyDistribution(Archive& archive, ObjectTables& tables,
                               Ref<zor::RigidBodyDistribution>& distribution);
  static void particleSystem(Archive& archive, ObjectTables& tables, Ref<zor::ParticleSystem>& system);
  static void emitter(Archive& archive, ObjectTables& tables, Ref<zor::EmitterBase>& emitter);

  // --- the simulation
  struct Settings {
    std::string name;
    zor::Vec3 gravity;
    double timeStep = 0;
    std::uint64_t subSteps = 0;
    std::uint64_t iterations = 0;
    bool autoSleep = false;
    zorSDK::Simulation::SolverType solver = zorSDK::Simulation::SEQUENTIAL_IMPULSES;
    double tolerance = 0;
    std::vector<std::pair<zor::UInt32, zor::UInt32>> disabledGroups;

    static Settings of(zorSDK::Simulation& simulation);
    void describe(Archive& archive);
    void check(Archive& archive) const;
    /** \param replace - true to forget the disabled groups that there are */
    void apply(zorSDK::Simulation& simulation, bool replace) const;
  };
  struct Clock {
    double start = 0;
    std::uint64_t stepsSinceStart = 0;
    std::uint64_t steps = 0; // ever done

    static Clock of(zorSDK::Simulation& simulation);
    void describe(Archive& archive);
    void apply(zorSDK::Simulation& simulation) const;
  };
  /** What is in the simulation, in its order. */
  struct Contents {
    std::vector<zor::Material*> materials;
    std::vector<zor::ContactMaterial*> contactMaterials;
    std::vector<zor::ContactMaterial*> usedContactMaterials; // those of the space
    std::vector<zor::RigidBody*> bodies;
    std::vector<zorCollide::Geometry*> geometries; // those of bodies too
    std::vector<zor::Constraint*> constraints;
    std::vector<zor::ObserverFrame*> observerFrames;
    std::vector<zorSDK::Assembly*> assemblies;
    std::vector<zor::ParticleSystem*> particleSystems;
    std::vector<zor::EmitterBase*> emitters;

    static Contents of(zorSDK::Simulation& simulation);
    void describe(Archive& archive, ObjectTables& tables);
  };
  /** What goes on between steps. */
  struct History {
    struct Touch {
      zorCollide::Geometry* first = nullptr;
      zorCollide::Geometry* second = nullptr;
    };
    zorBullet::WorldState world;
    std::vector<Touch> touches; // that contact listeners were told of

    static History of(zorSDK::Simulation& simulation, ObjectTables const& tables);
    void describe(Archive& archive, ObjectTables& tables);
    void apply(zorSDK::Simulation& simulation) const;
  };

  // --- frames
  /** A frame that belongs to an object. \param usual - its parent if the file does not say otherwise */
  static void ownFrame(Archive& archive, ObjectTables& tables, char const* name, zor::Frame& frame,
                       zor::Frame const* usual, zorBullet::GeometryImpl* geometry = nullptr);
  /** Gives all frames their names, and those that belong to nothing a place in the tables. */
  static void nameFrames(ObjectTables& tables);
  static void setParents(ObjectTables& tables);

  // --- emitters
  /** What an emitter has drawn and not placed yet, or null. */
  static zor::ParticleModel* drawnModel(zor::Emitter const& emitter);
  static zor::RigidBody* drawnModel(zor::RigidBodyEmitter const& emitter);

  static zorSDK::SimulationImpl& implOf(zorSDK::Simulation& simulation) { return *simulation.m_impl; }

  /** How what was read comes into a simulation. */
  class Entering;

private:
  static void convex(Archive& archive, Ref<zorCollide::Shape>& shape);
  static void massProperties(Archive& archive, zorBullet::BodyImpl& body);
  static std::uint32_t placeChecksum(zorBullet::BodyImpl& body);
  static void controller(Archive& archive, zor::Controller1D& controller);
  static void constraintMemory(Archive& archive, zorBullet::ConstraintImpl& impl);
  static void readGeometry(Archive& archive, char const* name, ObjectTables& tables,
                           zorBullet::GeometryImpl& impl);
  static void particles(Archive& archive, zorParticles::ParticleSystemImpl& impl);
  static void particleHistory(Archive& archive, ObjectTables& tables, zorParticles::ParticleSystemImpl& impl);
  static void randomGenerator(Archive& archive, zor::RandomGenerator& generator);
  static void randomReal(Archive& archive, char const* name, zor::RandomReal& value);
  static void particleEmitter(Archive& archive, ObjectTables& tables, Ref<zor::Emitter>& emitter,
                              zorCollide::Geometry* geometry);
  static void bodyEmitter(Archive& archive, ObjectTables& tables, Ref<zor::RigidBodyEmitter>& emitter,
                          zorCollide::Geometry* geometry);
  static void emission(Archive& archive, zor::EmitterBase& emitter);
  template <class Kind, class Table, class Rest>
  static void nextPiece(Archive& archive, Kind& emitter, Table& models, Rest rest);
};

} // namespace zorStream
