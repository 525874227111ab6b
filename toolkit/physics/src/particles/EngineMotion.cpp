#include <algorithm>
#include <cmath>

#include "bullet/SpaceImpl.h"
#include "particles/Engine.h"
#include "particles/WorkerPool.h"

namespace zorParticles {

namespace {

constexpr float PUSH_RATE = 0.25f; // of a penetration worked off in a sub-step
constexpr float SLOP = 0.005f;     // of the radius: penetration that stays, so that contacts do
// Two passes in a sub-step: the first goes too far, which carries weight through deep piles much faster, the
// second leaves each contact as it should be.
constexpr float OVER_RELAXATION = 1.6f;
constexpr double FAR_IN_A_ROUND = 0.4;   // of the radius: a faster particle may come on one that wasn't near
constexpr size_t FEW_ARE_FAST = 200;     // one in so many doesn't count
constexpr float LONGEST_PUSH = 0.1f;     // radii in a sub-step
constexpr uint32_t FEW = 500;            // particles for which threads don't pay
constexpr float BOUNCE_TIME = 1.0f / 30; // what falls for so long (s) doesn't bounce: it rests

Float3 toFloat(btVector3 const& v) {
  return {static_cast<float>(v.x()), static_cast<float>(v.y()), static_cast<float>(v.z())};
}

btVector3 toBt(Float3 const& v) {
  return btVector3(static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z));
}

/** What takes a penetration off, in part. */
float pushOf(float gap, float radius) {
  return std::max(std::min(gap + SLOP * radius, 0.0f) * PUSH_RATE, -LONGEST_PUSH * radius);
}

// Adds a change to an impulse that must not exceed a limit. \return what was added
Float3 addLimited(Float3& sum, Float3 const& change, float most) {
  Float3 const before = sum;
  sum = (sum + change).limited(most);
  return sum - before;
}

void applyPair(Ball& a, Ball& b, Float3 const& normal, Float3 const& impulse, Float3 const& friction) {
  a.velocity -= impulse * a.inverseMass;
  b.velocity += impulse * b.inverseMass;
  Float3 const turn = normal.cross(friction);
  a.spin -= turn * (a.radius * a.inverseInertia);
  b.spin -= turn * (b.radius * b.inverseInertia);
}

struct Place {
  Float3 normal; // from the first to the second
  float gap;
};

Place placeOf(PairContact const& contact, Ball const& a, Ball const& b) {
  Float3 const between = contact.between + (b.moved - a.moved);
  float const distance = between.length();
  return {between * (1 / distance), distance - a.radius - b.radius};
}

/**
 * Solves a contact along its normal: the two come as near as they may in the sub-step, and only push.
 * \return what was added to the impulse
 */
float changeNormal(Impulse& impulse, float mass, float along, float gap, float relaxation, float h) {
  float const before = impulse.normal;
  impulse.normal = std::max(before - relaxation * mass * (along + std::max(gap, 0.0f) / h), 0.0f);
  return impulse.normal - before;
}

void solvePair(PairContact& contact, Ball& a, Ball& b, Surface const& surface, float h, float relaxation) {
  auto const [n, gap] = placeOf(contact, a, b);
  Impulse& last = contact.impulse;
  Float3 const between = b.velocity - a.velocity;
  float const along = between.dot(n);
  float const radius = std::min(a.radius, b.radius);
  float const change = changeNormal(last, contact.mass, along, gap, relaxation, h);
  if (last.normal == 0 && change == 0)
    return;
  // The change along the normal doesn't change the speed across.
  Float3 across = between - (a.spin * a.radius + b.spin * b.radius).cross(n);
  across -= n * across.dot(n);
  Float3 const friction =
      addLimited(last.friction, across * (-contact.mass / 3.5f), surface.friction * last.normal);
  applyPair(a, b, n, n * change + friction, friction);
  if (surface.rolling > 0) {
    float const mass = 1 / (a.inverseInertia + b.inverseInertia);
    Float3 const rolling =
        addLimited(last.rolling, (a.spin - b.spin) * mass, surface.rolling * radius * last.normal);
    a.spin -= rolling * a.inverseInertia;
    b.spin += rolling * b.inverseInertia;
  }
}

void solveWall(WallContact& contact, Ball& a, Surface const& surface, float h, float elapsed,
               float relaxation) {
  Float3 const n = contact.normal;
  Impulse& last = contact.impulse;
  float const gap = contact.gap + (contact.velocity * elapsed - a.moved).dot(n);
  Float3 const between = contact.velocity - a.velocity;
  float const along = between.dot(n);
  float const change = changeNormal(last, contact.mass, along, gap, relaxation, h);
  if (last.normal == 0 && change == 0)
    return;
  Float3 across = between - (a.spin * a.radius).cross(n);
  across -= n * across.dot(n);
  Float3 const friction =
      addLimited(last.friction, across * (-contact.mass / 3.5f), surface.friction * last.normal);
  a.velocity -= (n * change + friction) * a.inverseMass;
  a.spin -= n.cross(friction) * (a.radius * a.inverseInertia);
  if (surface.rolling > 0)
    a.spin -=
        addLimited(last.rolling, a.spin * (1 / a.inverseInertia), surface.rolling * a.radius * last.normal) *
        a.inverseInertia;
}

void applyBody(BodyContact const& contact, Ball& a, PushedBody& body, Float3 const& impulse,
               Float3 const& friction, Float3 const& rolling) {
  a.velocity -= impulse * a.inverseMass;
  a.spin -= contact.normal.cross(friction) * (a.radius * a.inverseInertia) + rolling * a.inverseInertia;
  btVector3 const push = toBt(impulse);
  btVector3 const speed = push * body.inverseMass;
  btVector3 const spin = body.inverseInertia * (contact.arm.cross(push) + toBt(rolling));
  body.velocity += speed;
  body.spin += spin;
  body.pushed += speed;
  body.twisted += spin;
  body.touched = true;
}

void solveBody(BodyContact& contact, Ball& a, PushedBody& body, Surface const& surface, float h,
               float relaxation) {
  Float3 const n = contact.normal;
  Impulse& last = contact.impulse;
  Float3 const moved = toFloat(body.moved + body.turned.cross(contact.arm));
  float const gap = contact.gap + (moved - a.moved).dot(n);
  Float3 const between = toFloat(body.velocity + body.spin.cross(contact.arm)) - a.velocity;
  float const along = between.dot(n);
  float const change = changeNormal(last, contact.mass, along, gap, relaxation, h);
  if (last.normal == 0 && change == 0)
    return;
  Float3 across = between - (a.spin * a.radius).cross(n);
  across -= n * across.dot(n);
  Float3 const friction =
      addLimited(last.friction, across * -contact.frictionMass, surface.friction * last.normal);
  Float3 rolling;
  if (surface.rolling > 0)
    rolling = addLimited(last.rolling, (a.spin - toFloat(body.spin)) * contact.rollingMass,
                         surface.rolling * a.radius * last.normal);
  applyBody(contact, a, body, n * change + friction, friction, rolling);
}

// The impulse that turns the speed of approach round; the contact has stopped by now.
float bounceImpulse(WallContact const& contact, Surface const& surface, float along) {
  float const change = -contact.mass * (along + surface.restitution * contact.approach);
  return std::max(change, -contact.total);
}

} // namespace

template <class Task>
void Engine::forSlabs(Task task) {
  uint32_t const threads = m_balls.size() < FEW ? 1 : m_settings.threads;
  WorkerPool::shared().run(m_now.numSlabs, threads, [&](uint32_t slab) { task(m_now.slabs[slab]); });
}

/** Slabs side by side, then their even borders, then the odd ones. */
template <class InSlab, class Across>
void Engine::inColours(InSlab inSlab, Across across) {
  forSlabs(inSlab);
  if (m_now.numSlabs < 2)
    return;
  uint32_t const threads = m_balls.size() < FEW ? 1 : m_settings.threads;
  for (uint32_t const odd : {0u, 1u})
    WorkerPool::shared().run((m_now.numSlabs + 1 - odd) / 2, threads,
                             [&](uint32_t i) { across(m_now.slabs[2 * i + odd]); });
}

void Engine::step(ParticleStore& store, std::vector<zor::ref_ptr<zor::Material>>& materials,
                  StepSettings const& settings) {
  m_settings = settings;
  m_numLost = 0;
  choose(store);
  collectColliders(store, materials);
  uint32_t const rounds = numRounds(store);
  m_settings.dt /= rounds;
  m_settings.subSteps = std::max(1u, settings.subSteps / rounds);
  m_subStep = static_cast<float>(m_settings.dt / m_settings.subSteps);
  for (uint32_t i = 0; i < rounds; ++i) {
    if (i > 0)
      choose(store);
    round(store);
    m_colliders.advance(m_settings.dt);
  }
  m_colliders.pushBodies(settings.dt);
}

/** Where many particles are fast, contacts are looked for several times in a step. */
uint32_t Engine::numRounds(ParticleStore const& store) const {
  for (uint32_t rounds = 1; rounds < 4; rounds *= 2) {
    double const dt = m_settings.dt / rounds;
    auto const fast = static_cast<size_t>(std::count_if(m_chosen.begin(), m_chosen.end(), [&](uint32_t i) {
      return store.velocity[i].length() * dt > FAR_IN_A_ROUND * store.radius[i];
    }));
    if (fast * FEW_ARE_FAST <= m_chosen.size())
      return rounds;
  }
  return 4;
}

void Engine::collectColliders(ParticleStore const& store,
                              std::vector<zor::ref_ptr<zor::Material>>& materials) {
  Colliders::Query query{*m_settings.space, *m_settings.groups,
                         btVector3(BT_LARGE_FLOAT, BT_LARGE_FLOAT, BT_LARGE_FLOAT),
                         btVector3(-BT_LARGE_FLOAT, -BT_LARGE_FLOAT, -BT_LARGE_FLOAT), m_settings.dt};
  for (uint32_t const i : m_chosen) {
    double const reach = store.radius[i] + reachOf(store, i);
    btVector3 const at(store.position[i][0], store.position[i][1], store.position[i][2]),
        around(reach, reach, reach);
    query.lower.setMin(at - around);
    query.upper.setMax(at + around);
  }
  m_colliders.collect(query, materials);
  m_geometries.clear();
  for (Collider const& collider : m_colliders.all())
    m_geometries.emplace_back(collider.geometry);
  prepareSurfaces(materials);
}

void Engine::round(ParticleStore& store) {
  std::swap(m_now, m_last);
  m_grid.sort(store.position.data(), m_chosen, m_largestRadius > 0 ? 2 * m_largestRadius * CELL_SIZE : 1);
  gather(store);
  cutSlabs();
  forSlabs([this](SlabContacts& slab) { findContacts(static_cast<uint32_t>(&slab - m_now.slabs.data())); });
  m_stepsDone = 0;
  for (uint32_t i = 0; i < m_settings.subSteps; ++i)
    subStep();
  bounce();
  scatter(store);
}

void Engine::subStep() {
  for (PushedBody& body : m_colliders.bodies()) {
    body.velocity += body.acceleration * static_cast<double>(m_subStep);
    body.spin += body.twisting * static_cast<double>(m_subStep);
  }
  applyImpulses();
  solve(OVER_RELAXATION);
  solve(1);
  forSlabs([this](SlabContacts& slab) { advance(slab); });
  advanceBodies();
  ++m_stepsDone;
  push();
}

/** Forces, and the impulses of the last sub-step as a first guess. */
void Engine::applyImpulses() {
  auto const pairs = [this](std::vector<PairContact> const& contacts) {
    for (PairContact const& contact : contacts) {
      Impulse const& impulse = contact.impulse;
      if (impulse.normal == 0)
        continue;
      Ball &a = m_balls[contact.first], &b = m_balls[contact.second];
      Float3 const n = placeOf(contact, a, b).normal;
      applyPair(a, b, n, n * impulse.normal + impulse.friction, impulse.friction);
      a.spin -= impulse.rolling * a.inverseInertia;
      b.spin += impulse.rolling * b.inverseInertia;
    }
  };
  inColours(
      [&](SlabContacts& slab) {
        accelerate(slab);
        for (WallContact const& contact : slab.walls) {
          Ball& a = m_balls[contact.first];
          Impulse const& impulse = contact.impulse;
          a.velocity -= (contact.normal * impulse.normal + impulse.friction) * a.inverseMass;
          a.spin -= contact.normal.cross(impulse.friction) * (a.radius * a.inverseInertia) +
                    impulse.rolling * a.inverseInertia;
        }
        pairs(slab.inside);
      },
      [&](SlabContacts& slab) { pairs(slab.across); });
  for (uint32_t slab = 0; slab < m_now.numSlabs; ++slab)
    for (BodyContact& contact : m_now.slabs[slab].bodies)
      if (contact.impulse.normal > 0)
        applyBody(contact, m_balls[contact.first], m_colliders.bodies()[contact.body],
                  contact.normal * contact.impulse.normal + contact.impulse.friction,
                  contact.impulse.friction, contact.impulse.rolling);
}

void Engine::accelerate(SlabContacts const& slab) {
  for (uint32_t k = slab.begin; k < slab.end; ++k)
    m_balls[k].velocity += m_accelerations[k] * m_subStep;
}

void Engine::advance(SlabContacts& slab) {
  for (PairContact& contact : slab.inside)
    contact.total += contact.impulse.normal;
  for (PairContact& contact : slab.across)
    contact.total += contact.impulse.normal;
  for (WallContact& contact : slab.walls)
    contact.total += contact.impulse.normal;
  for (BodyContact& contact : slab.bodies)
    contact.total += contact.impulse.normal;
  for (uint32_t k = slab.begin; k < slab.end; ++k)
    m_balls[k].moved += m_balls[k].velocity * m_subStep;
}

void Engine::advanceBodies() {
  for (PushedBody& body : m_colliders.bodies()) {
    body.moved += body.velocity * static_cast<double>(m_subStep);
    body.turned += body.spin * static_cast<double>(m_subStep);
  }
}

void Engine::solve(float relaxation) {
  float const h = m_subStep, elapsed = static_cast<float>(m_stepsDone) * h;
  auto const pairs = [&](std::vector<PairContact>& contacts) {
    for (PairContact& contact : contacts)
      solvePair(contact, m_balls[contact.first], m_balls[contact.second], m_surfaces[contact.surface], h,
                relaxation);
  };
  inColours(
      [&](SlabContacts& slab) {
        pairs(slab.inside);
        for (WallContact& contact : slab.walls)
          solveWall(contact, m_balls[contact.first], m_surfaces[contact.surface], h, elapsed, relaxation);
      },
      [&](SlabContacts& slab) { pairs(slab.across); });
  for (uint32_t slab = 0; slab < m_now.numSlabs; ++slab)
    for (BodyContact& contact : m_now.slabs[slab].bodies)
      solveBody(contact, m_balls[contact.first], m_colliders.bodies()[contact.body],
                m_surfaces[contact.surface], h, relaxation);
}

/** Moves particles out of each other, without giving them speed. */
void Engine::push() {
  float const elapsed = static_cast<float>(m_stepsDone) * m_subStep;
  auto const pairs = [&](std::vector<PairContact> const& contacts) {
    for (PairContact const& contact : contacts) {
      Ball &a = m_balls[contact.first], &b = m_balls[contact.second];
      auto const [n, gap] = placeOf(contact, a, b);
      float const push = pushOf(gap, std::min(a.radius, b.radius));
      if (push == 0)
        continue;
      Float3 const way = n * (push * contact.mass);
      a.moved += way * a.inverseMass;
      b.moved -= way * b.inverseMass;
    }
  };
  inColours(
      [&](SlabContacts& slab) {
        pairs(slab.inside);
        for (WallContact const& contact : slab.walls) {
          Ball& a = m_balls[contact.first];
          float const gap = contact.gap + (contact.velocity * elapsed - a.moved).dot(contact.normal);
          a.moved += contact.normal * pushOf(gap, a.radius);
        }
      },
      [&](SlabContacts& slab) { pairs(slab.across); });
  for (uint32_t slab = 0; slab < m_now.numSlabs; ++slab)
    for (BodyContact const& contact : m_now.slabs[slab].bodies) {
      Ball& a = m_balls[contact.first];
      PushedBody& body = m_colliders.bodies()[contact.body];
      Float3 const moved = toFloat(body.moved + body.turned.cross(contact.arm));
      float const gap = contact.gap + (moved - a.moved).dot(contact.normal);
      a.moved += contact.normal * pushOf(gap, a.radius);
    }
}

void Engine::bounce() {
  float const least = -BOUNCE_TIME * static_cast<float>(m_settings.gravity.length());
  auto const isBounce = [&](float approach, float total, Surface const& surface) {
    return surface.restitution > 0 && approach < least && total > 0;
  };
  auto const pairs = [&](std::vector<PairContact>& contacts) {
    for (PairContact& contact : contacts) {
      Surface const& surface = m_surfaces[contact.surface];
      if (!isBounce(contact.approach, contact.total, surface))
        continue;
      Ball &a = m_balls[contact.first], &b = m_balls[contact.second];
      Float3 const n = placeOf(contact, a, b).normal;
      float const along = (b.velocity - a.velocity).dot(n);
      float const change =
          std::max(-contact.mass * (along + surface.restitution * contact.approach), -contact.total);
      contact.total += change;
      applyPair(a, b, n, n * change, {});
    }
  };
  if (std::none_of(m_surfaces.begin(), m_surfaces.end(), [](Surface const& s) { return s.restitution > 0; }))
    return;
  inColours(
      [&](SlabContacts& slab) {
        pairs(slab.inside);
        for (WallContact& contact : slab.walls) {
          Surface const& surface = m_surfaces[contact.surface];
          if (!isBounce(contact.approach, contact.total, surface))
            continue;
          Ball& a = m_balls[contact.first];
          float const change =
              bounceImpulse(contact, surface, (contact.velocity - a.velocity).dot(contact.normal));
          contact.total += change;
          a.velocity -= contact.normal * (change * a.inverseMass);
        }
      },
      [&](SlabContacts& slab) { pairs(slab.across); });
  for (uint32_t slab = 0; slab < m_now.numSlabs; ++slab)
    for (BodyContact& contact : m_now.slabs[slab].bodies) {
      Surface const& surface = m_surfaces[contact.surface];
      if (!isBounce(contact.approach, contact.total, surface))
        continue;
      Ball& a = m_balls[contact.first];
      PushedBody& body = m_colliders.bodies()[contact.body];
      float const along =
          (toFloat(body.velocity + body.spin.cross(contact.arm)) - a.velocity).dot(contact.normal);
      float const change = bounceImpulse(contact, surface, along);
      contact.total += change;
      applyBody(contact, a, body, contact.normal * change, {}, {});
    }
}

void Engine::scatter(ParticleStore& store) {
  forSlabs([&](SlabContacts const& slab) {
    for (uint32_t k = slab.begin; k < slab.end; ++k)
      scatter(store, k);
  });
}

/**
 * The solver computes in single precision, but what forces alone do is known better: only what contacts
 * changed is taken from it, so that a free flight is exact.
 */
void Engine::scatter(ParticleStore& store, uint32_t k) const {
  uint32_t const i = m_now.order[k];
  Ball const& ball = m_balls[k];
  double const h = m_settings.dt / m_settings.subSteps, steps = m_settings.subSteps;
  Float3 free{static_cast<float>(store.velocity[i][0]), static_cast<float>(store.velocity[i][1]),
              static_cast<float>(store.velocity[i][2])};
  Float3 freelyMoved;
  for (uint32_t s = 0; s < m_settings.subSteps; ++s) {
    free += m_accelerations[k] * m_subStep;
    freelyMoved += free * m_subStep;
  }
  Float3 const moved = ball.moved.limited(m_reach[k]);
  auto const vec = [](Float3 const& v) {
    return zor::Vec3(static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z));
  };
  zor::Vec3 const acceleration = m_settings.gravity + store.force[i] * (1 / store.mass[i]);
  store.position[i] += store.velocity[i] * (h * steps) + acceleration * (h * h * steps * (steps + 1) / 2) +
                       vec(moved - freelyMoved);
  store.velocity[i] += acceleration * (h * steps) + vec(ball.velocity - free);
  zor::Vec3& spin = store.angularVelocity[i];
  Float3 const before{static_cast<float>(spin[0]), static_cast<float>(spin[1]), static_cast<float>(spin[2])};
  spin += vec(ball.spin - before);
  double const angle = spin.length() * m_settings.dt;
  if (angle > 0) {
    store.rotation[i] *= zor::Quat(angle, spin * (m_settings.dt / angle));
    store.rotation[i].normalize();
  }
}

void Engine::renumber(std::vector<uint32_t> const& places, size_t newSize) {
  std::vector<uint32_t> place(newSize, NONE);
  for (size_t old = 0; old < m_now.place.size() && old < places.size(); ++old)
    if (places[old] != NONE)
      place[places[old]] = m_now.place[old];
  m_now.place = std::move(place);
  for (uint32_t& index : m_now.order)
    index = index == NONE || index >= places.size() ? NONE : places[index];
}

void Engine::clear() {
  m_now = ContactSet();
  m_last = ContactSet();
  m_balls.clear(); // the geometries stay, as the colliders refer to them
}

} // namespace zorParticles
