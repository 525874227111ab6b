#pragma once

#include <btBulletDynamicsCommon.h>

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
};

} // namespace zorBullet
