#pragma once

#include <vector>

#include <BulletCollision/BroadphaseCollision/btOverlappingPairCache.h>
#include <BulletCollision/CollisionDispatch/btCollisionDispatcher.h>
#include <BulletCollision/CollisionDispatch/btCollisionObjectWrapper.h>

namespace zorBullet {

class GeometryImpl;
class SpaceImpl;

/** The geometry whose leaf an engine's wrapper is about, also when it is about one triangle of the leaf. */
GeometryImpl* geometryOf(btCollisionObjectWrapper const& wrapper);

/** Keeps objects apart that have no two geometries that may meet. */
class OverlapFilter final : public btOverlapFilterCallback {
public:
  explicit OverlapFilter(SpaceImpl const& space) : m_space(space) {}
  bool needBroadphaseCollision(btBroadphaseProxy* proxy0, btBroadphaseProxy* proxy1) const override;

private:
  SpaceImpl const& m_space;
};

/** Keeps single geometries apart where their bodies may meet otherwise. */
class ContactDispatcher final : public btCollisionDispatcher {
public:
  ContactDispatcher(SpaceImpl const& space, btCollisionConfiguration* configuration)
      : btCollisionDispatcher(configuration), m_space(space) {}

  bool needsCollision(btCollisionObject const* body0, btCollisionObject const* body1) override;
  btCollisionAlgorithm* findAlgorithm(btCollisionObjectWrapper const* body0,
                                      btCollisionObjectWrapper const* body1,
                                      btPersistentManifold* sharedManifold,
                                      ebtDispatcherQueryType queryType) override;

  /** What the next algorithms are, whoever may meet whom: as the settings say, real ones, or ones that do
   * nothing. */
  enum class Making { AS_SET, REAL, EMPTY };
  void setMaking(Making making) { m_making = making; }

  /** Puts all manifolds there are into an order. */
  void arrange(std::vector<btPersistentManifold*> const& manifolds);

private:
  SpaceImpl const& m_space;
  Making m_making = Making::AS_SET;
};

/** Makes the engine ask for the material pair and name the geometries of each new or renewed contact point.
 * The engine has one such hook for all worlds; ours finds the space from the geometries. */
void installContactHook();

} // namespace zorBullet
