#pragma once

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

#include "bullet/GeometryImpl.h"
#include "bullet/WorldObject.h"

namespace zorBullet {

/** Two geometries that met; contact points of the engine carry a pointer to it (m_userPersistentData). */
struct GeometryPair {
  GeometryImpl* first = nullptr;  // of the manifold's first object
  GeometryImpl* second = nullptr; // of the manifold's second object
};

/** The dynamics world, which tells when contacts are found but not yet solved. */
class DynamicsWorld final : public btDiscreteDynamicsWorld {
public:
  using btDiscreteDynamicsWorld::btDiscreteDynamicsWorld;
  std::function<void()> contactsReady;

protected:
  void solveConstraints(btContactSolverInfo& info) override;
};

/**
 * The engine's side of a space: owns the one dynamics world.
 *
 * Bodies are added straight to `world()`, with a WorldObject attached to each; their geometries are added to
 * the space as well (zorCollide::Space::add), which makes rays, sensors, pair settings and contacts work.
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

  /** Brings sensors to where their bodies are; call before each step. */
  void beforeStep();

  /** Says how long the last step was, from which forces follow (impulse / time); 0 gives no forces. */
  void setLastTimeStep(double dt) { m_lastTimeStep = dt; }
  double getLastTimeStep() const { return m_lastTimeStep; }

  /** Called in each step between finding and solving contacts. */
  void setContactsReady(std::function<void()> callback) { m_world->contactsReady = std::move(callback); }

  /** Forgets the contacts and cached algorithms of an object, after its shape or filters changed. */
  void cleanContacts(btCollisionObject& object);

  void addGeometry(GeometryImpl& geometry);
  void removeGeometry(GeometryImpl& geometry);
  void forgetGeometry(GeometryImpl& geometry); // pairs that name it

  bool canCollide(GeometryImpl const& a, GeometryImpl const& b) const;
  /** False only if no geometry of one can meet any of the other. */
  bool canCollide(WorldObject const& a, WorldObject const& b) const;
  void filtersChanged();

  void addContactMaterial(zor::ContactMaterial& contactMaterial);
  bool removeContactMaterial(zor::ContactMaterial& contactMaterial);
  zor::ContactMaterial* findContactMaterial(zor::Material const* a, zor::Material const* b) const;

  void setEnablePair(zor::UInt32 a, zor::UInt32 b, bool enable);
  bool getEnablePair(zor::UInt32 a, zor::UInt32 b) const;

  /** The pair of a contact point, or null. */
  static GeometryPair const* pairOf(btManifoldPoint const& point) {
    return static_cast<GeometryPair const*>(point.m_userPersistentData);
  }
  /** Used by the contact callback. */
  GeometryPair& internPair(GeometryImpl& first, GeometryImpl& second);

  /** The contact point as the toolkit's value; swapped turns it to the view of the second geometry. */
  zorCollide::ContactPoint makePoint(btManifoldPoint const& point, bool swapped) const;

  /**
   * Collects contacts.
   * \param accept - gets a pair; 0 to leave it out, 1 to take it in this order, -1 to take it swapped
   */
  zorCollide::LocalGeometryContactVector
  collectContacts(std::function<int(GeometryPair const&)> const& accept) const;

  /** Nearest hit of a ray with unit direction; null for a miss. */
  GeometryImpl* castRay(Ray const& ray, bool includeSensors, Hit& hit) const;
  void castRayAll(Ray const& ray, double maxDistance, bool includeSensors,
                  zorCollide::RayHitVector& hits) const;

private:
  struct PairHash {
    size_t operator()(std::pair<void const*, void const*> const& key) const noexcept;
  };
  class OverlapFilter;
  class Dispatcher;

  zorCollide::Space& m_space;
  std::unique_ptr<btDefaultCollisionConfiguration> m_configuration;
  std::unique_ptr<btCollisionDispatcher> m_dispatcher;
  std::unique_ptr<btBroadphaseInterface> m_broadphase;
  std::unique_ptr<btOverlapFilterCallback> m_filter;
  std::unique_ptr<btSequentialImpulseConstraintSolver> m_solver;
  std::unique_ptr<DynamicsWorld> m_world;
  double m_lastTimeStep = 0.0;

  std::unordered_map<std::pair<void const*, void const*>, std::unique_ptr<GeometryPair>, PairHash> m_pairs;
  std::map<std::pair<zor::Material const*, zor::Material const*>, zor::ref_ptr<zor::ContactMaterial>>
      m_contactMaterials;
  std::set<std::pair<zor::UInt32, zor::UInt32>> m_disabledGroups;
  std::vector<GeometryImpl*> m_sensors; // those with an object that follows a body
};

} // namespace zorBullet
