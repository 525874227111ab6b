#include <algorithm>
#include <cmath>
#include <limits>

#include <zor/ContactMaterial.h>

#include "bullet/Conversions.h"
#include "bullet/SpaceImpl.h"
#include "particles/Engine.h"

namespace zorParticles {

namespace {

constexpr float NEAR_GAP = 0.04f;    // of the sum of radii: nearer, they are a contact also when they part
constexpr double FREE_MOTION = 0.25; // of the radius: what neighbours may add to a particle's way in a step
constexpr uint32_t MOST_SLABS = 16;
constexpr float SAME_NORMAL = 0.8f; // cosine: with a smaller angle a contact is the one of the last step

Float3 toFloat(btVector3 const& v) {
  return {static_cast<float>(v.x()), static_cast<float>(v.y()), static_cast<float>(v.z())};
}

Float3 toFloat(zor::Vec3 const& v) {
  return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

} // namespace

// Those that take part. One whose numbers a script has spoilt is switched off.
void Engine::choose(ParticleStore& store) {
  m_chosen.clear();
  m_largestRadius = 0;
  for (uint32_t i = 0; i < store.size(); ++i) {
    if (!store.enabled[i])
      continue;
    if (!store.isSane(i)) {
      store.enabled[i] = 0;
      ++m_numLost;
      continue;
    }
    m_chosen.push_back(i);
    m_largestRadius = std::max(m_largestRadius, store.radius[i]);
  }
}

/** How far a particle may move: contacts are looked for as far. */
double Engine::reachOf(ParticleStore const& store, uint32_t i) const {
  double const acceleration = (m_settings.gravity + store.force[i] * (1 / store.mass[i])).length();
  return (store.velocity[i].length() + acceleration * m_settings.dt) * m_settings.dt +
         FREE_MOTION * store.radius[i];
}

void Engine::gather(ParticleStore const& store) {
  std::vector<uint32_t> const& order = m_grid.order();
  size_t const count = order.size();
  m_now.order = order;
  m_now.place.assign(store.size(), NONE);
  m_now.start.resize(count);
  m_now.slab.resize(count);
  m_balls.resize(count);
  m_spots.resize(count);
  m_accelerations.resize(count);
  m_reach.resize(count);
  m_materials.resize(count);
  for (uint32_t k = 0; k < count; ++k) {
    uint32_t const i = order[k];
    m_now.place[i] = k;
    double const radius = store.radius[i], mass = store.mass[i];
    zor::Vec3 const acceleration = m_settings.gravity + store.force[i] * (1 / mass);
    m_spots[k] = {store.position[i][0], store.position[i][1], store.position[i][2], radius};
    m_balls[k] = {toFloat(store.velocity[i]),
                  static_cast<float>(1 / mass),
                  toFloat(store.angularVelocity[i]),
                  static_cast<float>(radius),
                  {},
                  static_cast<float>(2.5 / (mass * radius * radius))};
    m_accelerations[k] = toFloat(acceleration);
    m_reach[k] = static_cast<float>(reachOf(store, i));
    m_materials[k] = store.material[i];
  }
}

void Engine::cutSlabs() {
  auto const layers = static_cast<uint32_t>(m_grid.count(0));
  uint32_t slabs = std::min(MOST_SLABS, layers);
  auto const total = static_cast<uint32_t>(m_balls.size());
  m_now.numSlabs = slabs;
  if (m_now.slabs.size() < slabs)
    m_now.slabs.resize(slabs);
  if (m_cellColliders.size() < slabs) {
    m_cellColliders.resize(slabs);
    m_layerColliders.resize(slabs);
  }
  uint32_t layer = 0;
  for (uint32_t slab = 0; slab < slabs; ++slab) {
    SlabContacts& contacts = m_now.slabs[slab];
    contacts.clear();
    contacts.begin = m_grid.layerStart(static_cast<int>(layer));
    uint64_t const wanted = uint64_t(total) * (slab + 1) / slabs;
    ++layer; // each has one layer at least, and leaves as many to the others
    while (layer < layers - (slabs - 1 - slab) &&
           (slab + 1 == slabs || m_grid.layerStart(static_cast<int>(layer)) < wanted))
      ++layer;
    contacts.end = m_grid.layerStart(static_cast<int>(layer));
    for (uint32_t k = contacts.begin; k < contacts.end; ++k)
      m_now.slab[k] = static_cast<uint16_t>(slab);
  }
}

void Engine::prepareSurfaces(std::vector<zor::ref_ptr<zor::Material>> const& materials) {
  m_numMaterials = static_cast<uint32_t>(materials.size());
  m_surfaces.resize(materials.size() * materials.size());
  for (size_t a = 0; a < materials.size(); ++a)
    for (size_t b = 0; b < materials.size(); ++b) {
      Surface& surface = m_surfaces[a * materials.size() + b];
      zor::Material const &first = *materials[a], &second = *materials[b];
      if (auto const* const known = m_settings.space->findContactMaterial(&first, &second)) {
        surface.friction = static_cast<float>(known->getFriction());
        surface.restitution = static_cast<float>(known->getRestitution());
      } else {
        surface.friction = static_cast<float>(zor::ContactMaterial::combineFriction(first, second));
        surface.restitution = static_cast<float>(zor::ContactMaterial::combineRestitution(first, second));
      }
      surface.rolling = static_cast<float>(m_settings.rollingResistance);
    }
}

// --- the last step's impulses

Impulse Engine::lastPairImpulse(uint32_t first, uint32_t second) const {
  auto const lastPlace = [this](uint32_t now) {
    uint32_t const index = m_now.order[now];
    return index < m_last.place.size() ? m_last.place[index] : NONE;
  };
  uint32_t const a = lastPlace(first), b = lastPlace(second);
  if (a == NONE || b == NONE)
    return {};
  auto const find = [this](uint32_t from, uint32_t to) -> PairContact const* {
    SlabContacts const& slab = m_last.slabs[m_last.slab[from]];
    auto const scan = [&](std::vector<PairContact> const& pairs, uint32_t start) -> PairContact const* {
      for (size_t i = start; i < pairs.size() && pairs[i].first == from; ++i)
        if (pairs[i].second == to)
          return &pairs[i];
      return nullptr;
    };
    PairContact const* const found = scan(slab.inside, m_last.start[from].inside);
    return found ? found : scan(slab.across, m_last.start[from].across);
  };
  if (PairContact const* const same = find(a, b))
    return same->impulse;
  if (PairContact const* const turned = find(b, a))
    return {turned->impulse.normal, -turned->impulse.friction, -turned->impulse.rolling};
  return {};
}

template <class Contact>
Impulse Engine::lastWallImpulse(WallContact const& contact, std::vector<Contact> SlabContacts::* list,
                                uint32_t ContactStarts::* start) const {
  uint32_t const previous = m_colliders.all()[contact.collider].previous;
  uint32_t const index = m_now.order[contact.first];
  uint32_t const place = index < m_last.place.size() ? m_last.place[index] : NONE;
  if (previous == NONE || place == NONE)
    return {};
  std::vector<Contact> const& contacts = m_last.slabs[m_last.slab[place]].*list;
  for (size_t i = m_last.start[place].*start; i < contacts.size() && contacts[i].first == place; ++i)
    if (contacts[i].collider == previous && contacts[i].normal.dot(contact.normal) > SAME_NORMAL)
      return contacts[i].impulse;
  return {};
}

// --- this step's contacts

void Engine::findContacts(uint32_t slab) {
  SlabContacts& contacts = m_now.slabs[slab];
  if (contacts.begin == contacts.end)
    return;
  std::vector<Collider> const& colliders = m_colliders.all();
  std::vector<uint32_t>&inLayer = m_layerColliders[slab], &inCell = m_cellColliders[slab];
  auto const meets = [&](Collider const& collider, int axis, int at, double reach) {
    auto const space = static_cast<size_t>(m_grid.spaceAxis(axis));
    int begin = 0, end = 0;
    m_grid.span(axis, collider.lower[static_cast<int>(space)] - reach,
                collider.upper[static_cast<int>(space)] + reach, begin, end);
    return at >= begin && at < end;
  };
  for (int first = 0; first < m_grid.count(0); ++first) {
    CellGrid::Range const layer = m_grid.layer(first);
    if (layer.begin < contacts.begin || layer.begin >= contacts.end || layer.begin == layer.end)
      continue;
    double reach = 0;
    for (uint32_t k = layer.begin; k < layer.end; ++k)
      reach = std::max(reach, m_spots[k].radius + static_cast<double>(m_reach[k]));
    inLayer.clear();
    for (uint32_t c = 0; c < colliders.size(); ++c)
      if (meets(colliders[c], 0, first, reach))
        inLayer.push_back(c);
    for (int middle = 0; middle < m_grid.count(1); ++middle) {
      CellGrid::Range const row = m_grid.row(first, middle);
      if (row.begin == row.end)
        continue;
      inCell.clear();
      for (uint32_t const c : inLayer)
        if (meets(colliders[c], 1, middle, reach))
          inCell.push_back(c);
      for (int last = 0; last < m_grid.count(2); ++last) {
        CellGrid::Cell const cell{first, middle, last};
        CellGrid::Range const own = m_grid.cell(cell);
        if (own.begin == own.end)
          continue;
        findInCell(cell, contacts);
        if (!inCell.empty())
          for (uint32_t k = own.begin; k < own.end; ++k)
            findWalls(k, inCell, contacts);
        else
          for (uint32_t k = own.begin; k < own.end; ++k) {
            m_now.start[k].walls = static_cast<uint32_t>(contacts.walls.size());
            m_now.start[k].bodies = static_cast<uint32_t>(contacts.bodies.size());
          }
      }
    }
  }
}

void Engine::findInCell(CellGrid::Cell const& cell, SlabContacts& contacts) {
  CellGrid::Ranges near, next;
  CellGrid::Range const own = m_grid.cell(cell);
  size_t const numNear = m_grid.neighboursInLayer(cell, near);
  size_t const numNext = m_grid.neighboursInNextLayer(cell, next);
  for (uint32_t k = own.begin; k < own.end; ++k) {
    m_now.start[k].inside = static_cast<uint32_t>(contacts.inside.size());
    m_now.start[k].across = static_cast<uint32_t>(contacts.across.size());
    findPairs(k, {k + 1, own.end}, contacts.inside);
    for (size_t i = 0; i < numNear; ++i)
      findPairs(k, near[i], contacts.inside);
    // A slab ends with a layer, so that all of the next layer is in it or in the next slab.
    for (size_t i = 0; i < numNext; ++i) {
      bool const isInside =
          next[i].begin >= contacts.begin && next[i].begin < contacts.end && next[i].begin > k;
      findPairs(k, next[i], isInside ? contacts.inside : contacts.across);
    }
  }
}

void Engine::findPairs(uint32_t particle, CellGrid::Range range, std::vector<PairContact>& pairs) {
  Spot const a = m_spots[particle];
  Ball const& ball = m_balls[particle];
  for (uint32_t k = range.begin; k < range.end; ++k) {
    Spot const& b = m_spots[k];
    double const x = b.x - a.x, y = b.y - a.y, z = b.z - a.z;
    double const radii = a.radius + b.radius, distance2 = x * x + y * y + z * z;
    double const most = radii * (1 + PAIR_REACH);
    if (distance2 >= most * most)
      continue;
    Float3 between{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    float distance = between.length();
    if (distance == 0) { // the same place: any way apart will do
      distance = static_cast<float>(1e-3 * radii);
      between = {0, 0, distance};
    }
    Ball const& other = m_balls[k];
    Float3 const speed = other.velocity - ball.velocity;
    if (distance >
        static_cast<float>(radii) * (1 + NEAR_GAP) + speed.length() * static_cast<float>(m_settings.dt))
      continue;
    float const mass = 1 / (ball.inverseMass + other.inverseMass);
    pairs.push_back({particle, k, between, mass, speed.dot(between) / distance, 0,
                     m_materials[particle] * m_numMaterials + m_materials[k], lastPairImpulse(particle, k)});
  }
}

void Engine::findWalls(uint32_t particle, std::vector<uint32_t> const& candidates, SlabContacts& contacts) {
  m_now.start[particle].walls = static_cast<uint32_t>(contacts.walls.size());
  m_now.start[particle].bodies = static_cast<uint32_t>(contacts.bodies.size());
  Spot const& spot = m_spots[particle];
  btVector3 const center(spot.x, spot.y, spot.z);
  for (uint32_t const c : candidates) {
    Collider const& collider = m_colliders.all()[c];
    double const reach = spot.radius + static_cast<double>(m_reach[particle]);
    bool near = true;
    for (int axis = 0; axis < 3; ++axis)
      near = near && center[axis] >= collider.lower[axis] - reach &&
             center[axis] <= collider.upper[axis] + reach;
    if (!near)
      continue;
    zorBullet::SurfacePoints found;
    double const range = reach + collider.speed * m_settings.dt;
    collider.shape->closest(collider.inverse(center), range, collider.solid, found);
    found.transform(collider.frame, 0);
    for (zorBullet::SurfacePoint const& point : found)
      if (point.distance <= range)
        addWall(particle, c, point, spot.radius, contacts);
  }
}

void Engine::addWall(uint32_t particle, uint32_t index, zorBullet::SurfacePoint const& point, double radius,
                     SlabContacts& contacts) {
  Collider const& collider = m_colliders.all()[index];
  Float3 const normal = toFloat(-point.normal);
  auto const gap = static_cast<float>(point.distance - radius);
  if (collider.sensor) {
    if (gap <= 0)
      contacts.sensors.push_back({particle, index, normal, gap});
    return;
  }
  Ball const& ball = m_balls[particle];
  WallContact wall{};
  wall.first = particle;
  wall.collider = index;
  wall.normal = normal;
  wall.gap = gap;
  wall.velocity = toFloat(collider.velocityAt(point.point));
  wall.approach = (wall.velocity - ball.velocity).dot(normal);
  wall.surface = m_materials[particle] * m_numMaterials + collider.material;
  wall.mass = 1 / ball.inverseMass;
  if (collider.body == NONE) {
    wall.impulse = lastWallImpulse(wall, &SlabContacts::walls, &ContactStarts::walls);
    contacts.walls.push_back(wall);
    return;
  }
  PushedBody const& body = m_colliders.bodies()[collider.body];
  BodyContact contact{};
  static_cast<WallContact&>(contact) = wall;
  contact.body = collider.body;
  contact.arm = point.point - body.center;
  btVector3 const lever = contact.arm.cross(point.normal);
  double const along = body.inverseMass + lever.dot(body.inverseInertia * lever);
  contact.mass = static_cast<float>(1 / (static_cast<double>(ball.inverseMass) + along));
  // Friction may point anywhere across: as light as the body can be there.
  btMatrix3x3 const& inertia = body.inverseInertia;
  double const easiest = inertia[0][0] + inertia[1][1] + inertia[2][2];
  contact.frictionMass = static_cast<float>(
      1 / (3.5 * static_cast<double>(ball.inverseMass) + body.inverseMass + easiest * contact.arm.length2()));
  contact.rollingMass = static_cast<float>(1 / (static_cast<double>(ball.inverseInertia) + easiest));
  contact.impulse = lastWallImpulse(contact, &SlabContacts::bodies, &ContactStarts::bodies);
  contacts.bodies.push_back(contact);
}

} // namespace zorParticles
