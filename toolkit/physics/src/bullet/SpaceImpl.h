#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include <btBulletDynamicsCommon.h>

#include <zor/ContactMaterial.h>
#include <zorCollide/Space.h>

#include "bullet/ConstraintSolver.h"
#include "bullet/DynamicsWorld.h"
#include "bullet/GeometryImpl.h"
#include "bullet/Surfaces.h"
#include "bullet/WorldObject.h"

namespace zorStream {
struct StateAccess;
}

namespace zorBullet {

/** Two geometries that met; contact points of the engine carry a pointer to it (m_userPersistentData). */
struct GeometryPair {
  GeometryImpl* first = nullptr;  // of the manifold's first object
  GeometryImpl* second = nullptr; // of the manifold's second object
  Surface surface;
  std::uint64_t asOf = 0; // change of materials up to which the surface is right
  bool inUse = true;      // while old pairs are sought
};

/**
 * The engine's side of a space: owns the one dynamics world.
 *
 * Bodies are added straight to `world()`, with a WorldObject attached to each; their geometries are added to
 * the space as well (zorCollide::Space::add), which makes sensors, pair settings and contacts work.
 */
class SpaceImpl {
public:
  explicit SpaceImpl(zorCollide::Space& space);
  ~SpaceImpl();
  SpaceImpl(SpaceImpl const&) = delete;
  SpaceImpl& operator=(SpaceImpl const&) = delete;

  zorCollide::Space& space() const { return m_space; }
  DynamicsWorld& world() { return *m_world; }
  DynamicsWorld const& world() const { return *m_world; }

  // --- for the simulation

  /** Call before each step: brings sensors to where their bodies are and applies changed pair settings. From
   * the first call on, geometries that stand still do not meet each other. */
  void beforeStep();

  /** Call between finding contacts and computing motion: brings friction and restitution of all
   * points up to date, and lets bounce what will touch within the step, and only that: the engine else takes
   * the way to the surface off the bounce. */
  void prepareContacts(double dt);

  /** What the solver did since it was last reset. */
  SolverReport& solverReport() { return m_solverReport; }
  void setSolver(bool conjugateGradient);

  /** Says that bodies were moved by a step, and how long it was, from which forces follow (impulse / time); 0
   * gives no forces. */
  void setLastTimeStep(double dt) {
    m_lastTimeStep = dt;
    m_boxesAreOld = true;
  }
  double getLastTimeStep() const { return m_lastTimeStep; }

  /** The pair of a contact point, or null. */
  static GeometryPair const* pairOf(btManifoldPoint const& point) {
    return static_cast<GeometryPair const*>(point.m_userPersistentData);
  }

  /** False for points that the engine only keeps because the surfaces are near. */
  static bool isTouching(btManifoldPoint const& point);

  /** The contact point as the toolkit's value; swapped turns it to the view of the second geometry. */
  zorCollide::ContactPoint makePoint(btManifoldPoint const& point, bool swapped) const;

  /**
   * Collects contacts.
   * \param accept - gets a pair; 0 to leave it out, 1 to take it in this order, -1 to take it swapped
   */
  zorCollide::LocalGeometryContactVector
  collectContacts(std::function<int(GeometryPair const&)> const& accept) const;

  // --- for geometries

  void addObject(btCollisionObject& object, GeometryImpl& geometry);
  void removeObject(btCollisionObject& object, GeometryImpl& geometry);
  void objectMoved(btCollisionObject& object);
  void forgetGeometry(GeometryImpl& geometry); // pairs that name it
  void filtersChanged() { m_filtersChanged = true; }

  // --- for the space

  void update();
  bool canCollide(GeometryImpl const& a, GeometryImpl const& b) const;
  void addContactMaterial(zor::ContactMaterial& contactMaterial);
  bool removeContactMaterial(zor::ContactMaterial& contactMaterial);
  zor::ContactMaterial* findContactMaterial(zor::Material const* a, zor::Material const* b) const;
  void setEnablePair(zor::UInt32 a, zor::UInt32 b, bool enable);
  bool getEnablePair(zor::UInt32 a, zor::UInt32 b) const;

  /** Nearest hit of a ray with unit direction and hit.distance long; null for a miss. */
  GeometryImpl* castRay(Ray const& ray, bool includeSensors, Hit& hit) const;
  void castRayAll(Ray const& ray, double maxDistance, bool includeSensors,
                  zorCollide::RayHitVector& hits) const;

  // --- for the engine's call-backs

  /** False only if no geometry of one can meet any of the other. */
  bool canCollide(btCollisionObject const& a, btCollisionObject const& b) const;
  bool fixedObjectsMeet() const { return m_fixedObjectsMeet; }
  void setUpContact(btManifoldPoint& point, GeometryImpl& first, GeometryImpl& second);

private:
  friend class WorldStateAccess;
  friend struct zorStream::StateAccess;
  typedef std::pair<void const*, void const*> PairKey;
  struct PairHash {
    size_t operator()(PairKey const& key) const noexcept;
  };

  GeometryPair& internPair(GeometryImpl& first, GeometryImpl& second);
  void setSurface(btManifoldPoint& point, GeometryPair& pair);
  Surface findSurface(GeometryPair const& pair) const;
  void forgetOldPairs();
  void applyFilters();
  void moveFollowers() const;
  void updateBoxes(bool sensors) const;

  zorCollide::Space& m_space;
  std::unique_ptr<btCollisionConfiguration> m_configuration;
  std::unique_ptr<btCollisionDispatcher> m_dispatcher;
  std::unique_ptr<btOverlapFilterCallback> m_filter;
  std::unique_ptr<btBroadphaseInterface> m_broadphase;
  SolverReport m_solverReport;
  std::unique_ptr<btConstraintSolver> m_solver;
  std::unique_ptr<DynamicsWorld> m_world;
  double m_lastTimeStep = 0.0;
  mutable bool m_boxesAreOld = false; // bodies have moved since the engine looked
  bool m_filtersChanged = false;
  bool m_fixedObjectsMeet = true; // until the first step, as there is nothing else to ask for

  std::unordered_map<PairKey, std::unique_ptr<GeometryPair>, PairHash> m_pairs;
  size_t m_tooManyPairs = 1024;     // when to look for those that meet no more
  std::uint64_t m_surfacesAsOf = 0; // change of materials up to which all points are right
  bool m_somethingBounces = false;  // a pair that was met since has restitution
  std::map<std::pair<zor::Material const*, zor::Material const*>, zor::ref_ptr<zor::ContactMaterial>>
      m_contactMaterials;
  std::set<std::pair<zor::UInt32, zor::UInt32>> m_disabledGroups;
  std::vector<GeometryImpl*> m_withObject; // those with a collision object of their own
};

} // namespace zorBullet
