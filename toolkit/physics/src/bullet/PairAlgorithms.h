#pragma once

#include <functional>

#include <btBulletDynamicsCommon.h>

#include "bullet/WorldState.h"

namespace zorBullet {

class ContactDispatcher;

/** \param numberOf - gives the number of a manifold \return what the engine knows of a pair of objects */
WorldState::Pair describePair(btBroadphasePair const& pair,
                              std::function<int(btPersistentManifold const&)> const& numberOf);

/**
 * Makes what the engine makes when it looks at a pair for the first time, for exactly the given leaves.
 * \param take - gets the number and the manifold of each
 * \throws std::invalid_argument when the objects have no such leaves
 */
void makePair(btBroadphasePair& pair, WorldState::Pair const& state, ContactDispatcher& dispatcher,
              btDispatcherInfo const& info, std::function<void(int, btPersistentManifold&)> const& take);

} // namespace zorBullet
