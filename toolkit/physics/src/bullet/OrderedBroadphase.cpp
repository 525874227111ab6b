#include "bullet/OrderedBroadphase.h"

#include <algorithm>
#include <utility>

namespace zorBullet {

namespace {

bool isBefore(btBroadphasePair const& a, btBroadphasePair const& b) {
  return std::pair(a.m_pProxy0->m_uniqueId, a.m_pProxy1->m_uniqueId) <
         std::pair(b.m_pProxy0->m_uniqueId, b.m_pProxy1->m_uniqueId);
}

void takeOut(btDbvtProxy& proxy, btDbvtProxy*& list) {
  (proxy.links[0] ? proxy.links[0]->links[1] : list) = proxy.links[1];
  if (proxy.links[1])
    proxy.links[1]->links[0] = proxy.links[0];
}

void putIn(btDbvtProxy& proxy, btDbvtProxy*& list) {
  proxy.links[0] = nullptr;
  proxy.links[1] = list;
  if (list)
    list->links[0] = &proxy;
  list = &proxy;
}

/** Lets every pair pass. */
class NoFilter final : public btOverlapFilterCallback {
public:
  explicit NoFilter(btOverlappingPairCache& pairs)
      : m_pairs(pairs), m_before(pairs.getOverlapFilterCallback()) {
    m_pairs.setOverlapFilterCallback(this);
  }
  ~NoFilter() override { m_pairs.setOverlapFilterCallback(m_before); }
  bool needBroadphaseCollision(btBroadphaseProxy*, btBroadphaseProxy*) const override { return true; }

private:
  btOverlappingPairCache& m_pairs;
  btOverlapFilterCallback* m_before;
};

} // namespace

btBroadphaseProxy* OrderedBroadphase::createProxy(btVector3 const& lower, btVector3 const& upper,
                                                  int shapeType, void* object, int group, int mask,
                                                  btDispatcher* dispatcher) {
  int const first = m_paircache->getNumOverlappingPairs();
  btBroadphaseProxy* const proxy =
      btDbvtBroadphase::createProxy(lower, upper, shapeType, object, group, mask, dispatcher);
  sortFrom(first, dispatcher);
  return proxy;
}

void OrderedBroadphase::setAabb(btBroadphaseProxy* proxy, btVector3 const& lower, btVector3 const& upper,
                                btDispatcher* dispatcher) {
  int const first = m_paircache->getNumOverlappingPairs();
  btDbvtBroadphase::setAabb(proxy, lower, upper, dispatcher);
  if (m_paircache->getNumOverlappingPairs() - first > 1)
    sortFrom(first, dispatcher);
}

// New pairs stand at the end and have nothing yet that could get lost.
void OrderedBroadphase::sortFrom(int first, btDispatcher* dispatcher) {
  btBroadphasePairArray const& pairs = m_paircache->getOverlappingPairArray();
  std::vector<btBroadphasePair> added;
  for (int i = first; i < pairs.size(); ++i)
    added.push_back(pairs[i]);
  if (std::is_sorted(added.begin(), added.end(), isBefore))
    return;
  std::sort(added.begin(), added.end(), isBefore);
  dropPairs(first, dispatcher);
  NoFilter const noFilter(*m_paircache); // they have passed it
  for (btBroadphasePair const& pair : added)
    m_paircache->addOverlappingPair(pair.m_pProxy0, pair.m_pProxy1);
}

void OrderedBroadphase::dropPairs(int first, btDispatcher* dispatcher) {
  btBroadphasePairArray const& pairs = m_paircache->getOverlappingPairArray();
  while (pairs.size() > first) {
    btBroadphasePair const last = pairs[pairs.size() - 1];
    m_paircache->removeOverlappingPair(last.m_pProxy0, last.m_pProxy1, dispatcher);
  }
}

BroadphaseState OrderedBroadphase::state() const {
  return BroadphaseState{m_gid,          m_cid,          m_pid,          m_newpairs,      m_fixedleft,
                         m_stageCurrent, m_updates_call, m_updates_done, m_updates_ratio, m_needcleanup};
}

ProxyState OrderedBroadphase::state(btBroadphaseProxy const& proxy) {
  auto const& own = static_cast<btDbvtProxy const&>(proxy);
  return ProxyState{own.m_uniqueId,          own.m_aabbMin,           own.m_aabbMax,
                    own.leaf->volume.Mins(), own.leaf->volume.Maxs(), own.stage};
}

void OrderedBroadphase::place(btDbvtProxy& proxy, ProxyState const& state) {
  takeOut(proxy, m_stageRoots[proxy.stage]);
  m_sets[proxy.stage == STAGECOUNT ? FIXED_SET : DYNAMIC_SET].remove(proxy.leaf);
  proxy.m_uniqueId = state.id;
  proxy.m_aabbMin = state.lower;
  proxy.m_aabbMax = state.upper;
  proxy.stage = state.stage;
  btDbvtVolume const box = btDbvtVolume::FromMM(state.leafLower, state.leafUpper);
  proxy.leaf = m_sets[proxy.stage == STAGECOUNT ? FIXED_SET : DYNAMIC_SET].insert(box, &proxy);
  putIn(proxy, m_stageRoots[proxy.stage]);
}

void OrderedBroadphase::restore(BroadphaseState const& state, std::vector<btBroadphaseProxy*> const& proxies,
                                std::vector<ProxyState> const& states,
                                std::vector<std::pair<int, int>> const& pairs, btDispatcher& dispatcher) {
  dropPairs(0, &dispatcher);
  for (std::size_t i = 0; i < proxies.size(); ++i)
    place(static_cast<btDbvtProxy&>(*proxies[i]), states[i]);
  NoFilter const noFilter(*m_paircache);
  for (auto const& [first, second] : pairs)
    m_paircache->addOverlappingPair(proxies[static_cast<std::size_t>(first)],
                                    proxies[static_cast<std::size_t>(second)]);
  m_gid = state.lastId;
  m_cid = state.cleanUpAt;
  m_pid = state.parseId;
  m_newpairs = state.newPairs;
  m_fixedleft = state.fixedLeft;
  m_stageCurrent = state.stage;
  m_updates_call = state.updatesCalled;
  m_updates_done = state.updatesDone;
  m_updates_ratio = state.updatesRatio;
  m_needcleanup = state.needsCleanUp;
}

} // namespace zorBullet
