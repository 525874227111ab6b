#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <BulletCollision/BroadphaseCollision/btDbvtBroadphase.h>

namespace zorBullet {

/** What a box tree remembers of one object. */
struct ProxyState {
  int id = 0;
  btVector3 lower, upper;         // box of the object
  btVector3 leafLower, leafUpper; // box in the tree, which is larger
  int stage = 0;
};

/** What a box tree remembers of all. */
struct BroadphaseState {
  int lastId = 0;
  int cleanUpAt = 0;
  int parseId = 0;
  int newPairs = 0;
  int fixedLeft = 0;
  int stage = 0;
  std::uint32_t updatesCalled = 0;
  std::uint32_t updatesDone = 0;
  double updatesRatio = 0;
  bool needsCleanUp = false;
};

/**
 * The engine's box tree, whose pairs come in an order that depends on boxes only.
 *
 * The engine keeps its trees in shape by comparing addresses, so that an object which moves meets the others
 * in an order that differs from run to run, and with it the order in which contacts are solved. Here the
 * pairs that one change of a box brings are sorted by the numbers of their objects.
 */
class OrderedBroadphase final : public btDbvtBroadphase {
public:
  btBroadphaseProxy* createProxy(btVector3 const& lower, btVector3 const& upper, int shapeType, void* object,
                                 int group, int mask, btDispatcher* dispatcher) override;
  void setAabb(btBroadphaseProxy* proxy, btVector3 const& lower, btVector3 const& upper,
               btDispatcher* dispatcher) override;

  BroadphaseState state() const;
  static ProxyState state(btBroadphaseProxy const& proxy);

  /**
   * Puts all proxies and counters back to where they were.
   * \param proxies - all there are \param states - one each
   * \param pairs - positions in proxies, in the order of the pairs
   */
  void restore(BroadphaseState const& state, std::vector<btBroadphaseProxy*> const& proxies,
               std::vector<ProxyState> const& states, std::vector<std::pair<int, int>> const& pairs,
               btDispatcher& dispatcher);

private:
  void sortFrom(int first, btDispatcher* dispatcher);
  void dropPairs(int first, btDispatcher* dispatcher);
  void place(btDbvtProxy& proxy, ProxyState const& state);
};

} // namespace zorBullet
