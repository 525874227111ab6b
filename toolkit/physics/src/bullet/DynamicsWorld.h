#pragma once

#include <vector>

#include <btBulletDynamicsCommon.h>

#include "bullet/FreeRotation.h"

namespace zorBullet {

/**
 * The engine's world with its step cut in two. The engine's own step finds contacts in the middle of
 * computing motion, where nothing may be added to or removed from the world; between the halves everything
 * may change.
 */
class DynamicsWorld final : public btDiscreteDynamicsWorld {
public:
  using btDiscreteDynamicsWorld::btDiscreteDynamicsWorld;

  /** The first half of a step: where shapes meet now. */
  void findContacts(double dt);

  /** The second half: velocities from forces, contacts and constraints, then poses. */
  void computeMotion(double dt);

  void removeRigidBody(btRigidBody* body) override;
  void removeCollisionObject(btCollisionObject* object) override;

  // --- the order in which things are computed, which decides the last bits of a result

  btAlignedObjectArray<btRigidBody*> const& movingBodies() const { return m_nonStaticRigidBodies; }
  /** Manifolds of bodies that were swept in the last step. */
  btAlignedObjectArray<btPersistentManifold*>& sweptManifolds() { return m_predictiveManifolds; }

  // Each gets what is there in a new order.
  void arrange(std::vector<btCollisionObject*> const& objects);
  void arrange(std::vector<btRigidBody*> const& moving);
  void arrange(std::vector<btTypedConstraint*> const& constraints);

private:
  void forgetSwept(btCollisionObject const& object);

  FreeRotation m_freeRotation;
};

} // namespace zorBullet
