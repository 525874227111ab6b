#include "particles/ParticleSystemImpl.h"

#include <algorithm>
#include <numbers>

#include "bullet/GeometryImpl.h"

namespace zorParticles {

namespace {

constexpr double TOUCHING = 0.002; // of the radius: nearer particles are shown as contacts

zor::Vec3 toVec(Float3 const& v) {
  return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

} // namespace

ParticleSystemImpl::ParticleSystemImpl() {
  setMaterial(nullptr);
}

void ParticleSystemImpl::setMaterial(zor::Material* wanted) {
  material = wanted ? wanted : zorBullet::GeometryImpl::defaultMaterial();
}

uint32_t ParticleSystemImpl::indexOf(zor::Material& wanted) {
  auto const at = std::find_if(materials.begin(), materials.end(),
                               [&](auto const& each) { return each.get() == &wanted; });
  if (at != materials.end())
    return static_cast<uint32_t>(at - materials.begin());
  materials.push_back(&wanted);
  return static_cast<uint32_t>(materials.size() - 1);
}

double ParticleSystemImpl::massOf(double radius, uint32_t materialIndex) const {
  return 4.0 / 3.0 * std::numbers::pi * radius * radius * radius * materials[materialIndex]->getDensity();
}

zor::UInt ParticleSystemImpl::add(zor::Vec3 const& position, double radius, zor::Vec3 const& velocity,
                                  uint32_t materialIndex) {
  ParticleRow row;
  row.position = position;
  row.velocity = velocity;
  row.color = color;
  row.radius = radius;
  row.mass = massOf(radius, materialIndex);
  row.lifetime = std::numeric_limits<double>::infinity();
  row.material = materialIndex;
  row.id = m_nextId++;
  store.reserve(store.size() + 1);
  store.push(row);
  return store.size() - 1;
}

zor::UInt ParticleSystemImpl::removeMarked() {
  size_t kept = 0;
  for (size_t i = 0; i < m_places.size(); ++i)
    if (m_places[i] != NONE) {
      if (m_places[i] != i)
        store.move(i, m_places[i]);
      ++kept;
    }
  zor::UInt const removed = store.size() - kept;
  if (removed == 0)
    return 0;
  m_engine.renumber(m_places, kept);
  store.shrink(kept);
  return removed;
}

void ParticleSystemImpl::clear() {
  store.shrink(0);
  m_engine.clear();
}

bool ParticleSystemImpl::step(double dt, zor::Vec3 const& gravity, zorBullet::SpaceImpl& space) {
  if (!enabled)
    return true;
  StepSettings settings;
  settings.dt = dt;
  settings.gravity = gravity;
  settings.subSteps = subSteps;
  settings.threads = threads;
  settings.rollingResistance = rollingResistance;
  settings.groups = &groups;
  settings.space = &space;
  m_engine.step(store, materials, settings);
  std::fill_n(store.force.data(), store.size(), zor::Vec3());
  age(dt);
  return m_engine.numLost() == 0;
}

void ParticleSystemImpl::age(double dt) {
  bool anyDies = false;
  for (size_t i = 0; i < store.size(); ++i) {
    store.lifetime[i] -= dt;
    anyDies = anyDies || store.lifetime[i] <= 0;
  }
  if (anyDies)
    removeUnless([this](size_t i) { return store.lifetime[i] > 0; });
}

zor::UInt ParticleSystemImpl::numContacts() const {
  zor::UInt count = 0;
  for (uint32_t s = 0; s < m_engine.contacts().numSlabs; ++s) {
    SlabContacts const& slab = m_engine.contacts().slabs[s];
    count += slab.inside.size() + slab.across.size() + slab.walls.size() + slab.bodies.size();
  }
  return count;
}

zor::ParticleContacts ParticleSystemImpl::contacts() const {
  zor::ParticleContacts result;
  ContactSet const& set = m_engine.contacts();
  std::vector<Ball> const& balls = m_engine.balls();
  double const dt = m_engine.lastStep(), h = m_engine.lastSubStep();
  auto const add = [&](uint32_t first, uint32_t second, Float3 const& normal, double gap, double total,
                       Float3 const& friction, zorCollide::Geometry* geometry) {
    uint32_t const a = set.order[first], b = second == NONE ? NONE : set.order[second];
    double const radius = static_cast<double>(balls[first].radius);
    bool const gone = second == NONE ? !geometry : b == NONE;
    if (a == NONE || gone || (gap > TOUCHING * radius && total <= 0))
      return;
    result.particles1.push_back(a);
    result.particles2.push_back(b);
    result.points.push_back(store.position[a] + toVec(normal) * (radius + gap / 2));
    result.normals.push_back(-toVec(normal));
    result.depths.push_back(-gap);
    result.normalForces.push_back(total / dt);
    result.frictionForces.push_back(toVec(-friction) * (1 / h));
    result.geometries.push_back(geometry);
  };
  auto const addPairs = [&](std::vector<PairContact> const& pairs) {
    for (PairContact const& contact : pairs) {
      Ball const &a = balls[contact.first], &b = balls[contact.second];
      Float3 const between = contact.between + (b.moved - a.moved);
      float const distance = between.length();
      add(contact.first, contact.second, between * (1 / distance),
          static_cast<double>(distance - a.radius - b.radius), static_cast<double>(contact.total),
          contact.impulse.friction, nullptr);
    }
  };
  auto const addWall = [&](WallContact const& contact) {
    Float3 const moved = contact.velocity * static_cast<float>(dt) - balls[contact.first].moved;
    add(contact.first, NONE, contact.normal, static_cast<double>(contact.gap + moved.dot(contact.normal)),
        static_cast<double>(contact.total), contact.impulse.friction, m_engine.geometryOf(contact.collider));
  };
  for (uint32_t s = 0; s < set.numSlabs; ++s) {
    SlabContacts const& slab = set.slabs[s];
    addPairs(slab.inside);
    addPairs(slab.across);
    for (WallContact const& contact : slab.walls)
      addWall(contact);
    for (BodyContact const& contact : slab.bodies)
      addWall(contact);
    for (SensorContact const& contact : slab.sensors)
      add(contact.first, NONE, contact.normal, static_cast<double>(contact.gap), 0, {},
          m_engine.geometryOf(contact.collider));
  }
  return result;
}

} // namespace zorParticles
