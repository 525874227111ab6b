#include "bullet/PairAlgorithms.h"

#include <stdexcept>

#include <BulletCollision/CollisionDispatch/btCompoundCompoundCollisionAlgorithm.h>
#include <BulletCollision/CollisionDispatch/btHashedSimplePairCache.h>

#include "bullet/ContactFilter.h"

namespace zorBullet {

namespace {

using Compound = btCompoundCollisionAlgorithm; // a compound and something without parts
using TwoCompounds = btCompoundCompoundCollisionAlgorithm;

// The children are kept where only the engine's own classes see them. A template's explicit instantiation may
// name private members, which is the only way to them.
btHashedSimplePairCache*& childrenOf(TwoCompounds& algorithm);
template <btHashedSimplePairCache* TwoCompounds::* Member>
struct TwoCompoundsAccess {
  friend btHashedSimplePairCache*& childrenOf(TwoCompounds& algorithm) { return algorithm.*Member; }
};
template struct TwoCompoundsAccess<&TwoCompounds::m_childCollisionAlgorithmCache>;

struct CompoundAccess : Compound {
  static btAlignedObjectArray<btCollisionAlgorithm*>& children(Compound& algorithm) {
    return algorithm.*&CompoundAccess::m_childCollisionAlgorithms;
  }
  static bool isSwapped(Compound const& algorithm) { return algorithm.*&CompoundAccess::m_isSwapped; }
};

btPersistentManifold* manifoldOf(btCollisionAlgorithm& algorithm) {
  btManifoldArray manifolds;
  algorithm.getAllContactManifolds(manifolds);
  if (manifolds.size() > 1)
    throw std::runtime_error("a contact algorithm of two leaves has several manifolds");
  return manifolds.size() == 1 ? manifolds[0] : nullptr;
}

btCollisionObject& objectOf(btBroadphaseProxy const& proxy) {
  return *static_cast<btCollisionObject*>(proxy.m_clientObject);
}

btCollisionObjectWrapper wrap(btCollisionObject const& object) {
  return btCollisionObjectWrapper(nullptr, object.getCollisionShape(), &object, object.getWorldTransform(),
                                  -1, -1);
}

/** A leaf of an object as the engine's algorithms see it; the object itself without a compound. */
class LeafView {
public:
  LeafView(btCollisionObjectWrapper const& object, int leaf)
      : m_place(place(object, leaf)), m_wrapper(leaf < 0 ? nullptr : &object, shape(object, leaf),
                                                object.getCollisionObject(), m_place, -1, leaf) {}
  btCollisionObjectWrapper const& wrapper() const { return m_wrapper; }

private:
  static btCompoundShape const& compound(btCollisionObjectWrapper const& object, int leaf) {
    auto const* shape = dynamic_cast<btCompoundShape const*>(object.getCollisionShape());
    if (!shape || leaf >= shape->getNumChildShapes())
      throw std::invalid_argument("an object has no leaf " + std::to_string(leaf));
    return *shape;
  }
  static btCollisionShape const* shape(btCollisionObjectWrapper const& object, int leaf) {
    return leaf < 0 ? object.getCollisionShape() : compound(object, leaf).getChildShape(leaf);
  }
  static btTransform place(btCollisionObjectWrapper const& object, int leaf) {
    return leaf < 0 ? object.getWorldTransform()
                    : object.getWorldTransform() * compound(object, leaf).getChildTransform(leaf);
  }

  btTransform m_place;
  btCollisionObjectWrapper m_wrapper;
};

/** Makes the algorithms of one pair. */
class PairMaker {
public:
  PairMaker(btBroadphasePair& pair, ContactDispatcher& dispatcher, btDispatcherInfo const& info,
            std::function<void(int, btPersistentManifold&)> const& take)
      : m_pair(pair), m_dispatcher(dispatcher), m_info(info), m_take(take),
        m_first(wrap(objectOf(*pair.m_pProxy0))), m_second(wrap(objectOf(*pair.m_pProxy1))) {}
  ~PairMaker() { m_dispatcher.setMaking(ContactDispatcher::Making::AS_SET); }
  PairMaker(PairMaker const&) = delete;
  PairMaker& operator=(PairMaker const&) = delete;

  void make(WorldState::Pair const& state) {
    bool const firstHas = m_first.getCollisionShape()->isCompound();
    bool const secondHas = m_second.getCollisionShape()->isCompound();
    if (!firstHas && !secondHas) {
      if (state.leaves.size() != 1)
        throw std::invalid_argument("two objects of one leaf each have one pair of leaves");
      m_pair.m_algorithm = makeLeaves(state.leaves[0], -1, -1, false);
      return;
    }
    m_dispatcher.setMaking(ContactDispatcher::Making::REAL);
    m_pair.m_algorithm =
        m_dispatcher.findAlgorithm(&m_first, &m_second, nullptr, BT_CONTACT_POINT_ALGORITHMS);
    for (WorldState::Leaves const& leaves : state.leaves)
      addChild(leaves);
  }

private:
  void addChild(WorldState::Leaves const& leaves) {
    if (auto* both = dynamic_cast<TwoCompounds*>(m_pair.m_algorithm)) {
      checkIndex(leaves.first, m_first);
      checkIndex(leaves.second, m_second);
      btHashedSimplePairCache& children = *childrenOf(*both);
      if (children.findPair(leaves.first, leaves.second))
        throw std::invalid_argument("a pair of leaves stands twice");
      btCollisionAlgorithm* const child = makeLeaves(leaves, leaves.first, leaves.second, false);
      children.addOverlappingPair(leaves.first, leaves.second)->m_userPointer = child;
      return;
    }
    auto& one = dynamic_cast<Compound&>(*m_pair.m_algorithm);
    bool const swapped = CompoundAccess::isSwapped(one); // then the second object is the compound
    int const index = swapped ? leaves.second : leaves.first;
    if ((swapped ? leaves.first : leaves.second) != -1)
      throw std::invalid_argument("an object has no leaves");
    checkIndex(index, swapped ? m_second : m_first);
    auto& children = CompoundAccess::children(one);
    if (children[index])
      throw std::invalid_argument("a pair of leaves stands twice");
    children[index] = makeLeaves(leaves, leaves.first, leaves.second, swapped);
  }

  static void checkIndex(int leaf, btCollisionObjectWrapper const& object) {
    auto const& shape = static_cast<btCompoundShape const&>(*object.getCollisionShape());
    if (leaf < 0 || leaf >= shape.getNumChildShapes())
      throw std::invalid_argument("an object has no leaf " + std::to_string(leaf));
  }

  // The compound comes first, as the engine has it.
  btCollisionAlgorithm* makeLeaves(WorldState::Leaves const& leaves, int firstLeaf, int secondLeaf,
                                   bool swapped) {
    LeafView const first(m_first, firstLeaf), second(m_second, secondLeaf);
    btCollisionObjectWrapper const& a = swapped ? second.wrapper() : first.wrapper();
    btCollisionObjectWrapper const& b = swapped ? first.wrapper() : second.wrapper();
    bool const real = leaves.manifold >= 0;
    m_dispatcher.setMaking(real ? ContactDispatcher::Making::REAL : ContactDispatcher::Making::EMPTY);
    btCollisionAlgorithm* const algorithm =
        m_dispatcher.findAlgorithm(&a, &b, nullptr, BT_CONTACT_POINT_ALGORITHMS);
    try {
      if (real)
        takeManifold(leaves.manifold, *algorithm, a, b);
    } catch (...) { // nobody else knows it yet
      algorithm->~btCollisionAlgorithm();
      m_dispatcher.freeCollisionAlgorithm(algorithm);
      throw;
    }
    return algorithm;
  }

  // Some algorithms make their manifold only when they are first run.
  void takeManifold(int number, btCollisionAlgorithm& algorithm, btCollisionObjectWrapper const& a,
                    btCollisionObjectWrapper const& b) {
    btManifoldResult result(&a, &b);
    algorithm.processCollision(&a, &b, m_info, &result);
    btPersistentManifold* const manifold = manifoldOf(algorithm);
    if (!manifold)
      throw std::invalid_argument("two leaves have no manifold");
    m_take(number, *manifold);
  }

  btBroadphasePair& m_pair;
  ContactDispatcher& m_dispatcher;
  btDispatcherInfo const& m_info;
  std::function<void(int, btPersistentManifold&)> const& m_take;
  btCollisionObjectWrapper m_first;
  btCollisionObjectWrapper m_second;
};

} // namespace

WorldState::Pair describePair(btBroadphasePair const& pair,
                              std::function<int(btPersistentManifold const&)> const& numberOf) {
  WorldState::Pair state;
  btCollisionAlgorithm* const algorithm = pair.m_algorithm;
  state.known = algorithm != nullptr;
  if (!algorithm)
    return state;
  auto const add = [&](int first, int second, btCollisionAlgorithm& child) {
    btPersistentManifold const* const manifold = manifoldOf(child);
    state.leaves.push_back({first, second, manifold ? numberOf(*manifold) : -1});
  };
  if (auto* both = dynamic_cast<TwoCompounds*>(algorithm)) {
    btSimplePairArray const& children = childrenOf(*both)->getOverlappingPairArray();
    for (int i = 0; i < children.size(); ++i)
      add(children[i].m_indexA, children[i].m_indexB,
          *static_cast<btCollisionAlgorithm*>(children[i].m_userPointer));
  } else if (auto* one = dynamic_cast<Compound*>(algorithm)) {
    bool const swapped = CompoundAccess::isSwapped(*one);
    auto const& children = CompoundAccess::children(*one);
    for (int i = 0; i < children.size(); ++i)
      if (children[i])
        add(swapped ? -1 : i, swapped ? i : -1, *children[i]);
  } else {
    add(-1, -1, *algorithm);
  }
  return state;
}

void makePair(btBroadphasePair& pair, WorldState::Pair const& state, ContactDispatcher& dispatcher,
              btDispatcherInfo const& info, std::function<void(int, btPersistentManifold&)> const& take) {
  PairMaker(pair, dispatcher, info, take).make(state);
}

} // namespace zorBullet
