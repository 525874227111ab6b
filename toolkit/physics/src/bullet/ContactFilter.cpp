#include "bullet/ContactFilter.h"

#include <mutex>
#include <new>

#include <BulletCollision/CollisionDispatch/btEmptyCollisionAlgorithm.h>
#include <BulletCollision/CollisionDispatch/btInternalEdgeUtility.h>
#include <BulletCollision/CollisionDispatch/btManifoldResult.h>

#include "bullet/GeometryImpl.h"
#include "bullet/GridShape.h"
#include "bullet/SpaceImpl.h"

namespace zorBullet {
namespace {

bool contactAdded(btManifoldPoint& point, btCollisionObjectWrapper const* wrapper0, int part0, int index0,
                  btCollisionObjectWrapper const* wrapper1, int part1, int index1) {
  // Each call looks itself whether its first object is a triangle of a mesh with edge data.
  btAdjustInternalEdgeContacts(point, wrapper1, wrapper0, part1, index1);
  btAdjustInternalEdgeContacts(point, wrapper0, wrapper1, part0, index0);
  GridShape::straighten(point, *wrapper0, true);
  GridShape::straighten(point, *wrapper1, false);
  GeometryImpl* const first = geometryOf(*wrapper0);
  GeometryImpl* const second = geometryOf(*wrapper1);
  if (first && second && first->space() && first->space() == second->space())
    first->space()->setUpContact(point, *first, *second);
  return true;
}

} // namespace

GeometryImpl* geometryOf(btCollisionObjectWrapper const& wrapper) {
  for (btCollisionObjectWrapper const* at = &wrapper; at; at = at->m_parent)
    if (void* const pointer = at->getCollisionShape()->getUserPointer())
      return static_cast<GeometryImpl*>(pointer);
  return nullptr;
}

bool OverlapFilter::needBroadphaseCollision(btBroadphaseProxy* proxy0, btBroadphaseProxy* proxy1) const {
  auto const* object0 = static_cast<btCollisionObject const*>(proxy0->m_clientObject);
  auto const* object1 = static_cast<btCollisionObject const*>(proxy1->m_clientObject);
  return m_space.canCollide(*object0, *object1);
}

bool ContactDispatcher::needsCollision(btCollisionObject const* body0, btCollisionObject const* body1) {
  if (m_making == Making::REAL)
    return true;
  if (!m_space.fixedObjectsMeet())
    return btCollisionDispatcher::needsCollision(body0, body1);
  return body0->checkCollideWith(body1) && body1->checkCollideWith(body0); // though nothing moves
}

btCollisionAlgorithm* ContactDispatcher::findAlgorithm(btCollisionObjectWrapper const* body0,
                                                       btCollisionObjectWrapper const* body1,
                                                       btPersistentManifold* sharedManifold,
                                                       ebtDispatcherQueryType queryType) {
  GeometryImpl const* const first = geometryOf(*body0);
  GeometryImpl const* const second = geometryOf(*body1);
  bool const real = m_making == Making::AS_SET ? !first || !second || m_space.canCollide(*first, *second)
                                               : m_making == Making::REAL;
  if (real)
    return btCollisionDispatcher::findAlgorithm(body0, body1, sharedManifold, queryType);
  btCollisionAlgorithmConstructionInfo info;
  info.m_dispatcher1 = this;
  info.m_manifold = sharedManifold;
  return new (allocateCollisionAlgorithm(sizeof(btEmptyAlgorithm))) btEmptyAlgorithm(info);
}

void ContactDispatcher::arrange(std::vector<btPersistentManifold*> const& manifolds) {
  for (size_t i = 0; i < manifolds.size(); ++i) {
    m_manifoldsPtr[static_cast<int>(i)] = manifolds[i];
    manifolds[i]->m_index1a = static_cast<int>(i);
  }
}

void installContactHook() {
  static std::once_flag once;
  std::call_once(once, [] { gContactAddedCallback = contactAdded; });
}

} // namespace zorBullet
