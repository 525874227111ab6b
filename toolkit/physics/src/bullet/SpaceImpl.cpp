#include "bullet/SpaceImpl.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "bullet/ConstraintSolver.h"
#include "bullet/ContactFilter.h"
#include "bullet/Conversions.h"
#include "bullet/OrderedBroadphase.h"

namespace zorBullet {
namespace {

// Points farther apart than this (m) are not reported as contacts.
constexpr double touchDistance = 1e-3;
// Longest ray (m); the engine's tree needs a number.
constexpr double longestRay = 1e12;

template <class T>
std::pair<T, T> ordered(T a, T b) {
  return std::less<T>()(b, a) ? std::pair<T, T>(b, a) : std::pair<T, T>(a, b);
}

bool isFixed(btCollisionObject const& object) {
  return object.isStaticObject();
}

btVector3 velocityAt(btCollisionObject const& object, btVector3 const& point) {
  auto const* const body = btRigidBody::upcast(&object);
  return body ? body->getVelocityInLocalPoint(point - object.getWorldTransform().getOrigin())
              : btVector3(0, 0, 0);
}

/** Speed (m/s) at which two objects come together at a point. */
double approachSpeed(btPersistentManifold const& manifold, btManifoldPoint const& point) {
  btVector3 const velocity = velocityAt(*manifold.getBody1(), point.m_positionWorldOnB) -
                             velocityAt(*manifold.getBody0(), point.m_positionWorldOnA);
  return velocity.dot(point.m_normalWorldOnB);
}

// A body that lands flat on a plane gets its corners' contacts at once, not one in each step.
std::unique_ptr<btCollisionConfiguration> makeConfiguration() {
  auto configuration = std::make_unique<btDefaultCollisionConfiguration>();
  configuration->setPlaneConvexMultipointIterations();
  return configuration;
}

/** Hands over each object whose box the ray meets. */
template <class Visit>
class RayVisitor final : public btBroadphaseRayCallback {
public:
  RayVisitor(Ray const& ray, double length, Visit const& visit) : m_visit(visit) {
    for (int axis = 0; axis < 3; ++axis) {
      double const d = ray.direction[axis];
      m_rayDirectionInverse[axis] = d == 0.0 ? BT_LARGE_FLOAT : 1.0 / d;
      m_signs[axis] = m_rayDirectionInverse[axis] < 0.0;
    }
    m_lambda_max = length;
  }

  bool process(btBroadphaseProxy const* proxy) override {
    auto const* object = static_cast<btCollisionObject const*>(proxy->m_clientObject);
    if (WorldObject const* known = WorldObject::of(*object))
      for (GeometryImpl* geometry : known->geometries)
        m_visit(*geometry);
    return true;
  }

private:
  Visit const& m_visit;
};

template <class Visit>
void visitAlong(btBroadphaseInterface& broadphase, Ray const& ray, double length, Visit const& visit) {
  RayVisitor<Visit> visitor(ray, length, visit);
  broadphase.rayTest(ray.origin, ray.origin + ray.direction * length, visitor);
}

} // namespace

size_t SpaceImpl::PairHash::operator()(PairKey const& key) const noexcept {
  std::hash<void const*> const hash;
  return hash(key.first) * 31 + hash(key.second);
}

SpaceImpl::SpaceImpl(zorCollide::Space& space)
    : m_space(space), m_configuration(makeConfiguration()),
      m_dispatcher(std::make_unique<ContactDispatcher>(*this, m_configuration.get())),
      m_filter(std::make_unique<OverlapFilter>(*this)), m_broadphase(std::make_unique<OrderedBroadphase>()),
      m_solver(makeSolver(false, m_solverReport)),
      m_world(std::make_unique<DynamicsWorld>(m_dispatcher.get(), m_broadphase.get(), m_solver.get(),
                                              m_configuration.get())) {
  installContactHook();
  m_broadphase->getOverlappingPairCache()->setOverlapFilterCallback(m_filter.get());
  // Friction along both directions of the surface, so that it opposes any sliding.
  m_world->getSolverInfo().m_solverMode |= SOLVER_USE_2_FRICTION_DIRECTIONS;
}

SpaceImpl::~SpaceImpl() = default;

void SpaceImpl::setSolver(bool conjugateGradient) {
  auto solver = makeSolver(conjugateGradient, m_solverReport);
  m_world->setConstraintSolver(solver.get());
  m_solver = std::move(solver);
}

// --- steps

void SpaceImpl::moveFollowers() const {
  for (GeometryImpl* geometry : m_withObject)
    if (geometry->followsBody())
      geometry->moveObject();
}

// The engine brings boxes up to date when it looks for contacts; rays between two steps need it earlier.
void SpaceImpl::updateBoxes(bool sensors) const {
  if (sensors || m_boxesAreOld)
    moveFollowers(); // a body may have been moved by hand
  if (m_boxesAreOld)
    m_world->updateAabbs();
  m_boxesAreOld = false;
}

void SpaceImpl::applyFilters() {
  if (!m_filtersChanged)
    return;
  m_filtersChanged = false;
  btCollisionObjectArray& objects = m_world->getCollisionObjectArray();
  for (int i = 0; i < objects.size(); ++i)
    m_world->refreshBroadphaseProxy(objects[i]);
}

void SpaceImpl::beforeStep() {
  if (m_fixedObjectsMeet) {
    m_fixedObjectsMeet = false;
    m_filtersChanged = true;
  }
  applyFilters();
  moveFollowers();
  forgetOldPairs();
}

void SpaceImpl::prepareContacts(double dt) {
  std::uint64_t const changes = surfaceChanges.load(std::memory_order_relaxed);
  bool const changed = m_surfacesAsOf != changes;
  if (!changed && !m_somethingBounces)
    return; // points got their surface when they came
  m_surfacesAsOf = changes;
  if (changed)
    m_somethingBounces = false;                            // the points will tell
  double const gain = m_world->getGravity().length() * dt; // of speed within the step
  for (int i = 0; i < m_dispatcher->getNumManifolds(); ++i) {
    btPersistentManifold& manifold = *m_dispatcher->getManifoldByIndexInternal(i);
    for (int k = 0; k < manifold.getNumContacts(); ++k) {
      btManifoldPoint& point = manifold.getContactPoint(k);
      if (auto* const pair = static_cast<GeometryPair*>(point.m_userPersistentData);
          pair && (changed || pair->surface.restitution > 0.0))
        setSurface(point, *pair);
      if (point.m_combinedRestitution == 0.0 || point.getDistance() <= 0.0)
        continue;
      if ((approachSpeed(manifold, point) + gain) * dt > point.getDistance())
        point.setDistance(0.0);
      else
        point.m_combinedRestitution = 0.0;
    }
  }
}

void SpaceImpl::update() {
  applyFilters();
  moveFollowers();
  m_world->performDiscreteCollisionDetection();
  m_lastTimeStep = 0.0;
}

// --- objects

void SpaceImpl::addObject(btCollisionObject& object, GeometryImpl& geometry) {
  m_withObject.push_back(&geometry);
  m_world->addCollisionObject(&object, btBroadphaseProxy::DefaultFilter, btBroadphaseProxy::AllFilter);
}

void SpaceImpl::removeObject(btCollisionObject& object, GeometryImpl& geometry) {
  m_withObject.erase(std::remove(m_withObject.begin(), m_withObject.end(), &geometry), m_withObject.end());
  m_world->removeCollisionObject(&object);
}

void SpaceImpl::objectMoved(btCollisionObject& object) {
  m_world->updateSingleAabb(&object);
  if (!object.hasContactResponse())
    return;
  for (int i = 0; i < m_dispatcher->getNumManifolds(); ++i) { // what rested on it has to fall
    btPersistentManifold const& manifold = *m_dispatcher->getManifoldByIndexInternal(i);
    if (manifold.getBody0() == &object)
      manifold.getBody1()->activate();
    else if (manifold.getBody1() == &object)
      manifold.getBody0()->activate();
  }
}

void SpaceImpl::forgetGeometry(GeometryImpl& geometry) {
  // Points that name the pairs go with the objects; those of a body are dropped here, as it may stay.
  for (int i = 0; i < m_dispatcher->getNumManifolds(); ++i) {
    btPersistentManifold& manifold = *m_dispatcher->getManifoldByIndexInternal(i);
    for (int k = manifold.getNumContacts() - 1; k >= 0; --k) {
      GeometryPair const* const pair = pairOf(manifold.getContactPoint(k));
      if (pair && (pair->first == &geometry || pair->second == &geometry))
        manifold.removeContactPoint(k);
    }
  }
  std::erase_if(m_pairs, [&geometry](auto const& entry) {
    return entry.second->first == &geometry || entry.second->second == &geometry;
  });
}

// --- who meets whom

bool SpaceImpl::canCollide(btCollisionObject const& a, btCollisionObject const& b) const {
  WorldObject const* const first = WorldObject::of(a);
  WorldObject const* const second = WorldObject::of(b);
  if (!first || !second)
    return true;
  if (first->body && first->body == second->body)
    return false;
  if (isFixed(a) && isFixed(b) && !m_fixedObjectsMeet)
    return false;
  for (GeometryImpl const* one : first->geometries)
    for (GeometryImpl const* other : second->geometries)
      if (canCollide(*one, *other))
        return true;
  return false;
}

bool SpaceImpl::canCollide(GeometryImpl const& a, GeometryImpl const& b) const {
  if (&a == &b || !a.enabled || !b.enabled || !a.collisions || !b.collisions || (a.sensor && b.sensor))
    return false;
  if (a.owner() && a.owner() == b.owner())
    return false;
  if (a.disabled.contains(const_cast<GeometryImpl*>(&b)))
    return false;
  if (!m_disabledGroups.empty())
    for (zor::UInt32 const group : a.groups)
      for (zor::UInt32 const other : b.groups)
        if (m_disabledGroups.contains(ordered(group, other)))
          return false;
  return true;
}

void SpaceImpl::setEnablePair(zor::UInt32 a, zor::UInt32 b, bool enable) {
  bool const changed =
      enable ? m_disabledGroups.erase(ordered(a, b)) > 0 : m_disabledGroups.insert(ordered(a, b)).second;
  m_filtersChanged = m_filtersChanged || changed;
}

bool SpaceImpl::getEnablePair(zor::UInt32 a, zor::UInt32 b) const {
  return !m_disabledGroups.contains(ordered(a, b));
}

// --- materials

void SpaceImpl::addContactMaterial(zor::ContactMaterial& contactMaterial) {
  zor::Material const* const a = contactMaterial.getMaterial1();
  zor::Material const* const b = contactMaterial.getMaterial2();
  m_contactMaterials[ordered(a, b)] = &contactMaterial;
  surfacesChanged();
}

bool SpaceImpl::removeContactMaterial(zor::ContactMaterial& contactMaterial) {
  zor::Material const* const a = contactMaterial.getMaterial1();
  zor::Material const* const b = contactMaterial.getMaterial2();
  auto const it = m_contactMaterials.find(ordered(a, b));
  if (it == m_contactMaterials.end() || it->second.get() != &contactMaterial)
    return false;
  m_contactMaterials.erase(it);
  surfacesChanged();
  return true;
}

zor::ContactMaterial* SpaceImpl::findContactMaterial(zor::Material const* a, zor::Material const* b) const {
  if (m_contactMaterials.empty())
    return nullptr;
  auto const it = m_contactMaterials.find(ordered(a, b));
  return it == m_contactMaterials.end() ? nullptr : it->second.get();
}

// --- contacts

GeometryPair& SpaceImpl::internPair(GeometryImpl& first, GeometryImpl& second) {
  std::unique_ptr<GeometryPair>& pair = m_pairs[PairKey(&first, &second)];
  if (!pair)
    pair = std::make_unique<GeometryPair>(GeometryPair{&first, &second, {}});
  return *pair;
}

void SpaceImpl::setUpContact(btManifoldPoint& point, GeometryImpl& first, GeometryImpl& second) {
  auto* pair = static_cast<GeometryPair*>(point.m_userPersistentData); // of a point that is renewed
  if (!pair || pair->first != &first || pair->second != &second) {
    pair = &internPair(first, second);
    point.m_userPersistentData = pair;
  }
  setSurface(point, *pair);
}

Surface SpaceImpl::findSurface(GeometryPair const& pair) const {
  zor::Material const &a = *pair.first->material, &b = *pair.second->material;
  using zor::ContactMaterial;
  if (ContactMaterial const* const known = findContactMaterial(&a, &b))
    return {known->getFriction(),         known->getRestitution(), known->getRollingFriction(),
            known->getSpinningFriction(), known->getStiffness(),   known->getDamping()};
  return {ContactMaterial::combineFriction(a, b),        ContactMaterial::combineRestitution(a, b),
          ContactMaterial::combineRollingFriction(a, b), ContactMaterial::combineSpinningFriction(a, b),
          std::numeric_limits<double>::infinity(),       0.0};
}

void SpaceImpl::setSurface(btManifoldPoint& point, GeometryPair& pair) {
  if (std::uint64_t const changes = surfaceChanges.load(std::memory_order_relaxed); pair.asOf != changes) {
    pair.surface = findSurface(pair);
    pair.asOf = changes;
  }
  Surface const& surface = pair.surface;
  point.m_combinedFriction = surface.friction;
  point.m_combinedRestitution = surface.restitution;
  // The engine looks at spinning only where there is rolling friction.
  point.m_combinedRollingFriction =
      surface.spinningFriction > 0 ? std::max(surface.rollingFriction, 1e-12) : surface.rollingFriction;
  point.m_combinedSpinningFriction = surface.spinningFriction;
  m_somethingBounces = m_somethingBounces || surface.restitution > 0.0;
  if (std::isinf(surface.stiffness)) {
    point.m_contactPointFlags &= ~BT_CONTACT_FLAG_CONTACT_STIFFNESS_DAMPING;
    return;
  }
  point.m_contactPointFlags |= BT_CONTACT_FLAG_CONTACT_STIFFNESS_DAMPING;
  point.m_combinedContactStiffness1 = surface.stiffness;
  point.m_combinedContactDamping1 = surface.damping;
}

// Pairs stay when their geometries part, as they may meet again; in a stirred heap they would become more and
// more.
void SpaceImpl::forgetOldPairs() {
  if (m_pairs.size() < m_tooManyPairs)
    return;
  for (auto& [key, pair] : m_pairs)
    pair->inUse = false;
  for (int i = 0; i < m_dispatcher->getNumManifolds(); ++i) {
    btPersistentManifold const& manifold = *m_dispatcher->getManifoldByIndexInternal(i);
    for (int k = 0; k < manifold.getNumContacts(); ++k)
      if (void* const pair = manifold.getContactPoint(k).m_userPersistentData)
        static_cast<GeometryPair*>(pair)->inUse = true;
  }
  std::erase_if(m_pairs, [](auto const& entry) { return !entry.second->inUse; });
  m_tooManyPairs = std::max<size_t>(1024, 2 * m_pairs.size());
}

bool SpaceImpl::isTouching(btManifoldPoint const& point) {
  return point.getDistance() <= touchDistance || point.m_appliedImpulse > 0.0;
}

zorCollide::ContactPoint SpaceImpl::makePoint(btManifoldPoint const& point, bool swapped) const {
  double const side = swapped ? -1.0 : 1.0;
  btVector3 const middle = (point.m_positionWorldOnA + point.m_positionWorldOnB) * 0.5;
  zorCollide::ContactPoint result(fromBt(middle), fromBt(point.m_normalWorldOnB * side),
                                  -point.getDistance());
  if (m_lastTimeStep > 0.0) {
    btVector3 const friction = point.m_lateralFrictionDir1 * point.m_appliedImpulseLateral1 +
                               point.m_lateralFrictionDir2 * point.m_appliedImpulseLateral2;
    result.setNormalForceMagnitude(point.m_appliedImpulse / m_lastTimeStep);
    result.setTangentialForce(fromBt(friction * (side / m_lastTimeStep)));
  }
  return result;
}

zorCollide::LocalGeometryContactVector
SpaceImpl::collectContacts(std::function<int(GeometryPair const&)> const& accept) const {
  zorCollide::LocalGeometryContactVector contacts;
  std::unordered_map<PairKey, size_t, PairHash> places;
  for (int i = 0; i < m_dispatcher->getNumManifolds(); ++i) {
    btPersistentManifold const& manifold = *m_dispatcher->getManifoldByIndexInternal(i);
    for (int k = 0; k < manifold.getNumContacts(); ++k) {
      btManifoldPoint const& point = manifold.getContactPoint(k);
      GeometryPair const* const pair = pairOf(point);
      int const order = pair && isTouching(point) ? accept(*pair) : 0;
      if (order == 0)
        continue;
      // The engine may hold a pair in both orders; the first one found stands for both.
      auto const found = places.try_emplace(ordered<void const*>(pair->first, pair->second), contacts.size());
      if (found.second)
        contacts.push_back(
            order > 0 ? zorCollide::GeometryContact(&pair->first->geometry(), &pair->second->geometry())
                      : zorCollide::GeometryContact(&pair->second->geometry(), &pair->first->geometry()));
      zorCollide::GeometryContact& contact = contacts[found.first->second];
      contact.addPoint(makePoint(point, contact.getGeometry1() != &pair->first->geometry()));
    }
  }
  return contacts;
}

// --- rays

GeometryImpl* SpaceImpl::castRay(Ray const& ray, bool includeSensors, Hit& hit) const {
  updateBoxes(includeSensors);
  GeometryImpl* nearest = nullptr;
  visitAlong(*m_broadphase, ray, std::min(hit.distance, longestRay), [&](GeometryImpl& geometry) {
    if (geometry.enabled && (includeSensors || !geometry.sensor) && geometry.castRay(ray, hit))
      nearest = &geometry;
  });
  return nearest;
}

void SpaceImpl::castRayAll(Ray const& ray, double maxDistance, bool includeSensors,
                           zorCollide::RayHitVector& hits) const {
  updateBoxes(includeSensors);
  visitAlong(*m_broadphase, ray, std::min(maxDistance, longestRay), [&](GeometryImpl& geometry) {
    if (geometry.enabled && (includeSensors || !geometry.sensor))
      geometry.castRayOnEach(ray, maxDistance, hits);
  });
  std::sort(hits.begin(), hits.end(),
            [](auto const& a, auto const& b) { return a.getDistance() < b.getDistance(); });
}

} // namespace zorBullet
