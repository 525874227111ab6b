#pragma once

#include <cstdint>
#include <vector>

#include <btBulletDynamicsCommon.h>

#include <zor/Constraint.h>
#include <zor/RigidBody.h>
#include <zorCollide/Geometry.h>

#include "bullet/OrderedBroadphase.h"

namespace zorBullet {

class SpaceImpl;

/** How an engine's object moves, beyond what its owner knows. */
struct MotionState {
  btTransform pose = btTransform::getIdentity();
  btTransform foreseenPose = btTransform::getIdentity();
  btVector3 foreseenVelocity{0, 0, 0};
  btVector3 foreseenSpin{0, 0, 0};
  int activation = ACTIVE_TAG;
  double timeAtRest = 0;

  static MotionState of(btCollisionObject const& object);
  /** Activation only, which entering a world changes. */
  void applyActivation(btCollisionObject& object) const;
  void apply(btCollisionObject& object) const;
};

/**
 * What the engine remembers from step to step: where its boxes are, which objects are near one another,
 * contact points with their last impulses, and the order of all that. A world restored from it goes on bit
 * for bit.
 *
 * Objects, pairs and manifolds name each other by their positions in the lists.
 */
struct WorldState {
  struct Object {
    zor::RigidBody* body = nullptr;           // either a body
    zorCollide::Geometry* geometry = nullptr; // or a geometry with an object of its own
    MotionState motion;                       // of the latter; bodies keep theirs
    ProxyState proxy;
  };
  /** Two leaves of compounds; -1 stands for an object that has only one. */
  struct Leaves {
    int first = -1;
    int second = -1;
    int manifold = -1; // -1 where the two must not meet
  };
  struct Pair {
    int first = 0;
    int second = 0;
    bool known = false; // whether the engine has looked at it
    std::vector<Leaves> leaves;
  };
  struct Point {
    btManifoldPoint point;
    zorCollide::Geometry* first = nullptr; // null for a point without a pair
    zorCollide::Geometry* second = nullptr;
  };
  struct Manifold {
    int first = 0;
    int second = 0;
    double breaking = 0;
    double processing = 0;
    std::vector<Point> points;
  };

  std::vector<Object> objects;
  std::vector<int> moving;                   // those that are not static, in the engine's order
  std::vector<zor::Constraint*> constraints; // those in the world
  std::vector<zorCollide::Geometry*> ownObjects;
  BroadphaseState broadphase;
  std::vector<Pair> pairs;
  std::vector<Manifold> manifolds;
  std::vector<int> swept; // manifolds of bodies swept in the last step
  std::uint64_t randomSeed = 0;
  double lastTimeStep = 0;
  bool boxesAreOld = false;
  bool filtersChanged = false;
  bool fixedObjectsMeet = true;

  /** \param constraints - all that may be in the world */
  static WorldState of(SpaceImpl& space, zor::ConstraintRefVector const& constraints);

  /**
   * Restores a world that holds the same objects and nothing else; bodies must be where they were.
   * \throws std::invalid_argument when they are not the same
   */
  void restore(SpaceImpl& space, zor::ConstraintRefVector const& constraints) const;
};

} // namespace zorBullet
