#include "bullet/WorldState.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>

#include "bullet/BodyImpl.h"
#include "bullet/ConstraintImpl.h"
#include "bullet/ContactFilter.h"
#include "bullet/GeometryImpl.h"
#include "bullet/PairAlgorithms.h"
#include "bullet/SpaceImpl.h"

namespace zorBullet {

// --- motion of one object

MotionState MotionState::of(btCollisionObject const& object) {
  return MotionState{object.getWorldTransform(),
                     object.getInterpolationWorldTransform(),
                     object.getInterpolationLinearVelocity(),
                     object.getInterpolationAngularVelocity(),
                     object.getActivationState(),
                     object.getDeactivationTime()};
}

void MotionState::applyActivation(btCollisionObject& object) const {
  object.forceActivationState(activation);
  object.setDeactivationTime(timeAtRest);
}

void MotionState::apply(btCollisionObject& object) const {
  if (btRigidBody* const body = btRigidBody::upcast(&object))
    body->setCenterOfMassTransform(pose); // also turns the inertia
  object.setWorldTransform(pose);
  object.setInterpolationWorldTransform(foreseenPose);
  object.setInterpolationLinearVelocity(foreseenVelocity);
  object.setInterpolationAngularVelocity(foreseenSpin);
  applyActivation(object);
}

/** Reads and writes what a space and its world keep to themselves. */
class WorldStateAccess {
public:
  WorldStateAccess(SpaceImpl& space, zor::ConstraintRefVector const& constraints)
      : m_space(space), m_constraints(constraints), m_world(*space.m_world),
        m_dispatcher(static_cast<ContactDispatcher&>(*space.m_dispatcher)),
        m_broadphase(static_cast<OrderedBroadphase&>(*space.m_broadphase)) {}

  WorldState capture();
  void restore(WorldState const& state);

private:
  // --- capturing
  void captureObjects(WorldState& state);
  void captureConstraints(WorldState& state);
  void captureManifolds(WorldState& state);
  WorldState::Point pointState(btManifoldPoint const& point) const;
  int numberOf(btCollisionObject const* object) const { return m_numbers.at(object); }

  // --- restoring
  void findObjects(WorldState const& state);
  void arrangeObjects(WorldState const& state);
  void arrangeConstraints(WorldState const& state);
  void restorePairs(WorldState const& state);
  void makeManifolds(WorldState const& state);
  void sweptManifolds(WorldState const& state);
  void fill(btPersistentManifold& manifold, WorldState::Manifold const& state);
  btCollisionObject& object(int index) const;

  SpaceImpl& m_space;
  zor::ConstraintRefVector const& m_constraints;
  DynamicsWorld& m_world;
  ContactDispatcher& m_dispatcher;
  OrderedBroadphase& m_broadphase;
  std::unordered_map<btCollisionObject const*, int> m_numbers;
  std::vector<btCollisionObject*> m_objects;
  std::vector<btPersistentManifold*> m_manifolds;
};

// --- capturing

WorldState WorldStateAccess::capture() {
  WorldState state;
  captureObjects(state);
  captureConstraints(state);
  captureManifolds(state);
  state.broadphase = m_broadphase.state();
  state.randomSeed = static_cast<btSequentialImpulseConstraintSolver&>(*m_space.m_solver).getRandSeed();
  state.lastTimeStep = m_space.m_lastTimeStep;
  state.boxesAreOld = m_space.m_boxesAreOld;
  state.filtersChanged = m_space.m_filtersChanged;
  state.fixedObjectsMeet = m_space.m_fixedObjectsMeet;
  return state;
}

void WorldStateAccess::captureObjects(WorldState& state) {
  std::unordered_map<btCollisionObject const*, GeometryImpl*> owners;
  for (GeometryImpl* geometry : m_space.m_withObject) {
    owners[geometry->object()] = geometry;
    state.ownObjects.push_back(&geometry->geometry());
  }
  btCollisionObjectArray const& objects = m_world.getCollisionObjectArray();
  for (int i = 0; i < objects.size(); ++i) {
    WorldState::Object object;
    auto const owner = owners.find(objects[i]);
    if (owner != owners.end()) {
      object.geometry = &owner->second->geometry();
      object.motion = MotionState::of(*objects[i]);
    } else {
      object.body = WorldObject::of(*objects[i])->body;
    }
    object.proxy = OrderedBroadphase::state(*objects[i]->getBroadphaseHandle());
    m_numbers[objects[i]] = i;
    state.objects.push_back(object);
  }
  auto const& moving = m_world.movingBodies();
  for (int i = 0; i < moving.size(); ++i)
    state.moving.push_back(numberOf(moving[i]));
}

void WorldStateAccess::captureConstraints(WorldState& state) {
  std::unordered_map<btTypedConstraint const*, zor::Constraint*> owners;
  for (auto const& constraint : m_constraints)
    if (btTypedConstraint const* const engine = constraint->getImpl().engine())
      owners[engine] = constraint.get();
  for (int i = 0; i < m_world.getNumConstraints(); ++i)
    state.constraints.push_back(owners.at(m_world.getConstraint(i)));
}

WorldState::Point WorldStateAccess::pointState(btManifoldPoint const& point) const {
  WorldState::Point state{point, nullptr, nullptr};
  if (GeometryPair const* const pair = SpaceImpl::pairOf(point)) {
    state.first = &pair->first->geometry();
    state.second = &pair->second->geometry();
  }
  state.point.m_userPersistentData = nullptr;
  return state;
}

void WorldStateAccess::captureManifolds(WorldState& state) {
  for (int i = 0; i < m_dispatcher.getNumManifolds(); ++i) {
    btPersistentManifold const& manifold = *m_dispatcher.getManifoldByIndexInternal(i);
    WorldState::Manifold record{numberOf(manifold.getBody0()),
                                numberOf(manifold.getBody1()),
                                manifold.getContactBreakingThreshold(),
                                manifold.getContactProcessingThreshold(),
                                {}};
    for (int k = 0; k < manifold.getNumContacts(); ++k)
      record.points.push_back(pointState(manifold.getContactPoint(k)));
    state.manifolds.push_back(std::move(record));
  }
  auto const number = [](btPersistentManifold const& manifold) { return manifold.m_index1a; };
  btBroadphasePairArray const& pairs = m_broadphase.m_paircache->getOverlappingPairArray();
  for (int i = 0; i < pairs.size(); ++i) {
    WorldState::Pair pair = describePair(pairs[i], number);
    pair.first = numberOf(static_cast<btCollisionObject*>(pairs[i].m_pProxy0->m_clientObject));
    pair.second = numberOf(static_cast<btCollisionObject*>(pairs[i].m_pProxy1->m_clientObject));
    state.pairs.push_back(std::move(pair));
  }
  auto const& swept = m_world.sweptManifolds();
  for (int i = 0; i < swept.size(); ++i)
    state.swept.push_back(number(*swept[i]));
}

// --- restoring

namespace {

[[noreturn]] void differ(std::string const& what) {
  throw std::invalid_argument(what);
}

// Whether positions are each of 0 to count - 1 at most once.
void checkDistinct(std::vector<int> const& positions, size_t count, char const* what) {
  std::vector<bool> seen(count);
  for (int const position : positions) {
    auto const at = static_cast<size_t>(position);
    if (position < 0 || at >= count || seen[at])
      differ(std::string(what) + " " + std::to_string(position) + " is out of range or stands twice");
    seen[at] = true;
  }
}

} // namespace

btCollisionObject& WorldStateAccess::object(int index) const {
  if (index < 0 || static_cast<size_t>(index) >= m_objects.size())
    differ("there is no object " + std::to_string(index));
  return *m_objects[static_cast<size_t>(index)];
}

void WorldStateAccess::restore(WorldState const& state) {
  findObjects(state);
  arrangeConstraints(state); // takes pairs away
  arrangeObjects(state);
  restorePairs(state);
  makeManifolds(state);
  static_cast<btSequentialImpulseConstraintSolver&>(*m_space.m_solver)
      .setRandSeed(static_cast<unsigned long>(state.randomSeed));
  m_space.m_lastTimeStep = state.lastTimeStep;
  m_space.m_boxesAreOld = state.boxesAreOld;
  m_space.m_filtersChanged = state.filtersChanged;
  m_space.m_fixedObjectsMeet = state.fixedObjectsMeet;
}

void WorldStateAccess::findObjects(WorldState const& state) {
  btCollisionObjectArray const& present = m_world.getCollisionObjectArray();
  for (WorldState::Object const& each : state.objects) {
    btCollisionObject* found = each.geometry ? each.geometry->getImpl().object() : nullptr;
    if (each.body && each.body->getImpl().inWorld())
      found = &each.body->getImpl().engine();
    if (!found || !m_numbers.try_emplace(found, static_cast<int>(m_objects.size())).second)
      differ("an object is not in the world, or stands twice");
    m_objects.push_back(found);
  }
  if (m_objects.size() != static_cast<size_t>(present.size()))
    differ(std::to_string(m_objects.size()) + " objects are known, but the world has " +
           std::to_string(present.size()));
  for (int i = 0; i < present.size(); ++i)
    if (!m_numbers.contains(present[i]))
      differ("an object of the world is not known");
}

void WorldStateAccess::arrangeObjects(WorldState const& state) {
  std::vector<GeometryImpl*> own;
  for (zorCollide::Geometry* geometry : state.ownObjects)
    own.push_back(&geometry->getImpl());
  if (!std::is_permutation(own.begin(), own.end(), m_space.m_withObject.begin(), m_space.m_withObject.end()))
    differ("the geometries with objects of their own are others");
  m_space.m_withObject = own;

  std::vector<btRigidBody*> moving;
  checkDistinct(state.moving, m_objects.size(), "moving object");
  for (int const index : state.moving)
    moving.push_back(btRigidBody::upcast(&object(index)));
  auto const& present = m_world.movingBodies();
  bool const same = static_cast<size_t>(present.size()) == moving.size() &&
                    std::all_of(moving.begin(), moving.end(),
                                [&](btRigidBody* body) { return body && !body->isStaticObject(); });
  if (!same)
    differ("the moving objects are others");
  m_world.arrange(m_objects);
  m_world.arrange(moving);
  for (size_t i = 0; i < state.objects.size(); ++i)
    if (state.objects[i].geometry)
      state.objects[i].motion.apply(*m_objects[i]);
}

void WorldStateAccess::arrangeConstraints(WorldState const& state) {
  std::vector<zor::Constraint*> const& wanted = state.constraints;
  std::unordered_set<zor::Constraint*> const set(wanted.begin(), wanted.end());
  if (set.size() != wanted.size())
    differ("a constraint stands twice");
  for (auto const& constraint : m_constraints)
    if (!set.contains(constraint.get()))
      constraint->getImpl().takeOut();
  std::vector<btTypedConstraint*> order;
  for (zor::Constraint* constraint : wanted) {
    if (std::find(m_constraints.begin(), m_constraints.end(), constraint) == m_constraints.end())
      differ("a constraint is not in the simulation");
    order.push_back(&constraint->getImpl().putIn());
  }
  m_world.arrange(order);
}

void WorldStateAccess::restorePairs(WorldState const& state) {
  std::vector<btBroadphaseProxy*> proxies;
  std::vector<ProxyState> states;
  std::vector<int> ids;
  for (size_t i = 0; i < m_objects.size(); ++i) {
    proxies.push_back(m_objects[i]->getBroadphaseHandle());
    states.push_back(state.objects[i].proxy);
    ProxyState const& proxy = states.back();
    ids.push_back(proxy.id);
    if (proxy.stage < 0 || proxy.stage > btDbvtBroadphase::STAGECOUNT || proxy.id > state.broadphase.lastId)
      differ("an object's box is in no stage, or its number is too high");
  }
  std::sort(ids.begin(), ids.end());
  if (std::adjacent_find(ids.begin(), ids.end()) != ids.end())
    differ("two objects have the same number");
  if (state.broadphase.stage < 0 || state.broadphase.stage >= btDbvtBroadphase::STAGECOUNT ||
      state.broadphase.cleanUpAt < 0)
    differ("the boxes are in no stage");
  std::vector<std::pair<int, int>> pairs;
  for (WorldState::Pair const& pair : state.pairs) {
    object(pair.first);
    object(pair.second);
    if (pair.first == pair.second)
      differ("an object is paired with itself");
    pairs.emplace_back(pair.first, pair.second);
  }
  m_broadphase.restore(state.broadphase, proxies, states, pairs, m_dispatcher);
  if (static_cast<size_t>(m_broadphase.m_paircache->getNumOverlappingPairs()) != pairs.size())
    differ("a pair of objects stands twice");
}

void WorldStateAccess::makeManifolds(WorldState const& state) {
  if (m_dispatcher.getNumManifolds() != 0)
    differ("the world has contacts already");
  m_manifolds.assign(state.manifolds.size(), nullptr);
  auto const take = [&](int number, btPersistentManifold& manifold) {
    if (static_cast<size_t>(number) >= m_manifolds.size() || m_manifolds[static_cast<size_t>(number)])
      differ("manifold " + std::to_string(number) + " is not there or stands twice");
    m_manifolds[static_cast<size_t>(number)] = &manifold;
  };
  btBroadphasePairArray& pairs = m_broadphase.m_paircache->getOverlappingPairArray();
  for (size_t i = 0; i < state.pairs.size(); ++i)
    if (state.pairs[i].known)
      makePair(pairs[static_cast<int>(i)], state.pairs[i], m_dispatcher, m_world.getDispatchInfo(), take);
  sweptManifolds(state);
  for (size_t i = 0; i < m_manifolds.size(); ++i) {
    if (!m_manifolds[i])
      differ("manifold " + std::to_string(i) + " belongs to no pair");
    fill(*m_manifolds[i], state.manifolds[i]);
  }
  if (static_cast<size_t>(m_dispatcher.getNumManifolds()) != m_manifolds.size())
    differ("the world has manifolds that are not known");
  m_dispatcher.arrange(m_manifolds);
}

void WorldStateAccess::sweptManifolds(WorldState const& state) {
  for (int const number : state.swept) {
    if (number < 0 || static_cast<size_t>(number) >= m_manifolds.size() ||
        m_manifolds[static_cast<size_t>(number)])
      differ("manifold " + std::to_string(number) + " is not there or stands twice");
    WorldState::Manifold const& manifold = state.manifolds[static_cast<size_t>(number)];
    btPersistentManifold* const made =
        m_dispatcher.getNewManifold(&object(manifold.first), &object(manifold.second));
    m_world.sweptManifolds().push_back(made);
    m_manifolds[static_cast<size_t>(number)] = made;
  }
}

void WorldStateAccess::fill(btPersistentManifold& manifold, WorldState::Manifold const& state) {
  if (manifold.getBody0() != &object(state.first) || manifold.getBody1() != &object(state.second))
    differ("a manifold is of other objects");
  if (state.points.size() > MANIFOLD_CACHE_SIZE)
    differ("a manifold has more than " + std::to_string(MANIFOLD_CACHE_SIZE) + " points");
  manifold.setContactBreakingThreshold(state.breaking);
  manifold.setContactProcessingThreshold(state.processing);
  manifold.setNumContacts(static_cast<int>(state.points.size()));
  for (size_t i = 0; i < state.points.size(); ++i) {
    WorldState::Point const& point = state.points[i];
    btManifoldPoint& target = manifold.getContactPoint(static_cast<int>(i));
    target = point.point;
    target.m_userPersistentData = nullptr;
    if (!point.first != !point.second)
      differ("a contact point has one geometry");
    if (point.first &&
        (point.first->getImpl().space() != &m_space || point.second->getImpl().space() != &m_space))
      differ("a contact point is of a geometry that is not in the simulation");
    if (point.first)
      target.m_userPersistentData = &m_space.internPair(point.first->getImpl(), point.second->getImpl());
  }
}

WorldState WorldState::of(SpaceImpl& space, zor::ConstraintRefVector const& constraints) {
  return WorldStateAccess(space, constraints).capture();
}

void WorldState::restore(SpaceImpl& space, zor::ConstraintRefVector const& constraintsOfSimulation) const {
  WorldStateAccess(space, constraintsOfSimulation).restore(*this);
}

} // namespace zorBullet
