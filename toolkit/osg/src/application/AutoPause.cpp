#include "AutoPause.h"

#include <zorCollide/Space.h>

#include <algorithm>
#include <stdexcept>

namespace zorOSG {

namespace {

template <class Pair, class T>
bool isPair(Pair const& pair, T const* first, T const* second) {
  return (pair.first == first && pair.second == second) || (pair.first == second && pair.second == first);
}

template <class Pairs>
bool anyContact(Pairs const& pairs, zorCollide::Space const& space) {
  return std::any_of(pairs.begin(), pairs.end(), [&space](auto const& pair) {
    auto const contacts = space.getGeometryContacts(pair.first.get(), pair.second.get());
    return std::any_of(contacts.begin(), contacts.end(), [](auto const& c) { return !c.isEmpty(); });
  });
}

} // namespace

template <class T>
void AutoPause::insert(Pairs<T>& pairs, T const* first, T const* second) {
  if (!first || !second)
    throw std::invalid_argument("addAutoPausePair: both partners must be given");
  auto const same = [&](auto const& pair) { return isPair(pair, first, second); };
  if (std::none_of(pairs.begin(), pairs.end(), same))
    pairs.emplace_back(first, second);
}

template <class T>
void AutoPause::erase(Pairs<T>& pairs, T const* first, T const* second) {
  std::erase_if(pairs, [&](auto const& pair) { return isPair(pair, first, second); });
}

template void AutoPause::insert(Pairs<zor::RigidBody>&, zor::RigidBody const*, zor::RigidBody const*);
template void AutoPause::insert(Pairs<zorCollide::Geometry>&, zorCollide::Geometry const*,
                                zorCollide::Geometry const*);
template void AutoPause::erase(Pairs<zor::RigidBody>&, zor::RigidBody const*, zor::RigidBody const*);
template void AutoPause::erase(Pairs<zorCollide::Geometry>&, zorCollide::Geometry const*,
                               zorCollide::Geometry const*);

void AutoPause::clear() {
  m_bodies.clear();
  m_geometries.clear();
}

bool AutoPause::isTriggered(zorCollide::Space const& space) const {
  return m_enabled && (anyContact(m_bodies, space) || anyContact(m_geometries, space));
}

} // namespace zorOSG
