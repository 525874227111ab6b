#include "particles/EngineMemory.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <unordered_set>

#include "particles/Engine.h"

namespace zorParticles {

namespace {

bool isFinite(Float3 const& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool isFinite(btVector3 const& v) {
  return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

bool isFinite(Impulse const& impulse) {
  return std::isfinite(impulse.normal) && isFinite(impulse.friction) && isFinite(impulse.rolling);
}

bool isFinite(PairContact const& contact) {
  return isFinite(contact.between) && std::isfinite(contact.total) && isFinite(contact.impulse);
}

bool isFinite(WallContact const& contact) {
  return isFinite(contact.normal) && std::isfinite(contact.gap) && std::isfinite(contact.total) &&
         isFinite(contact.impulse) && isFinite(contact.velocity);
}

bool isFinite(SensorContact const& contact) {
  return isFinite(contact.normal) && std::isfinite(contact.gap);
}

bool isFinite(EngineMemory::Expected const& body) {
  return isFinite(body.velocity) && isFinite(body.spin) && isFinite(body.load) && isFinite(body.twist);
}

template <class From, class To>
void append(std::vector<To>& to, std::vector<From> const& contacts) {
  for (From const& contact : contacts)
    if (isFinite(contact))
      to.push_back(contact);
}

[[noreturn]] void refuse(std::string const& what) {
  throw std::invalid_argument(what);
}

std::string contactName(char const* list, size_t number) {
  return "contact " + std::to_string(number) + " of '" + list + "' ";
}

/** Builds the contacts of an engine, and checks them on the way. */
class ContactBuilder {
public:
  ContactBuilder(EngineMemory const& memory, size_t numParticles)
      : m_memory(memory), m_count(memory.order.size()) {
    orderParticles(numParticles);
    cutSlabs();
    checkPairs("inside", memory.inside);
    checkPairs("across", memory.across);
    checkColliders("walls", memory.walls);
    checkColliders("bodies", memory.bodies);
    checkColliders("sensors", memory.sensors);
    deal("inside", memory.inside, &SlabContacts::inside, &ContactStarts::inside);
    deal("across", memory.across, &SlabContacts::across, &ContactStarts::across);
    deal("walls", memory.walls, &SlabContacts::walls, &ContactStarts::walls);
    deal("bodies", memory.bodies, &SlabContacts::bodies, &ContactStarts::bodies);
    deal("sensors", memory.sensors, &SlabContacts::sensors, nullptr);
  }

  ContactSet take() { return std::move(m_set); }

private:
  void orderParticles(size_t numParticles) {
    if (m_count > numParticles + removed() || m_memory.moved.size() != m_count ||
        m_memory.radii.size() != m_count)
      refuse("there are " + std::to_string(numParticles) + " particles, but " + std::to_string(m_count) +
             " in order, " + std::to_string(m_memory.moved.size()) + " moved and " +
             std::to_string(m_memory.radii.size()) + " radii");
    m_set.order = m_memory.order;
    m_set.place.assign(numParticles, NONE);
    for (size_t k = 0; k < m_count; ++k) {
      uint32_t const index = m_set.order[k];
      if (index == NONE)
        continue;
      if (index >= numParticles || m_set.place[index] != NONE)
        refuse("particle " + std::to_string(index) + " of 'order' is not there or stands twice");
      m_set.place[index] = static_cast<uint32_t>(k);
    }
    for (size_t k = 0; k < m_count; ++k)
      if (!isFinite(m_memory.moved[k]) || !(m_memory.radii[k] >= 0) || !std::isfinite(m_memory.radii[k]))
        refuse("'moved' or 'radius' of particle " + std::to_string(k) + " is not finite or negative");
  }

  size_t removed() const {
    return static_cast<size_t>(std::count(m_memory.order.begin(), m_memory.order.end(), NONE));
  }

  void cutSlabs() {
    std::vector<uint32_t> const& ends = m_memory.slabEnds;
    bool const whole = ends.empty() ? m_count == 0 : ends.back() == m_count;
    if (!whole || !std::is_sorted(ends.begin(), ends.end()) || ends.size() > UINT16_MAX)
      refuse("'slabEnds' must ascend to " + std::to_string(m_count));
    m_set.numSlabs = static_cast<uint32_t>(ends.size());
    m_set.slabs.resize(ends.size());
    m_set.slab.resize(m_count);
    m_set.start.resize(m_count);
    uint32_t begin = 0;
    for (size_t slab = 0; slab < ends.size(); ++slab) {
      m_set.slabs[slab].begin = begin;
      m_set.slabs[slab].end = ends[slab];
      for (; begin < ends[slab]; ++begin)
        m_set.slab[begin] = static_cast<uint16_t>(slab);
    }
  }

  void checkPairs(char const* list, std::vector<PairContact> const& pairs) const {
    for (size_t i = 0; i < pairs.size(); ++i)
      if (!isFinite(pairs[i]) || pairs[i].second >= m_count || pairs[i].second == pairs[i].first)
        refuse(contactName(list, i) + "has no second particle, or numbers that are not finite");
  }

  template <class Contact>
  void checkColliders(char const* list, std::vector<Contact> const& contacts) const {
    for (size_t i = 0; i < contacts.size(); ++i)
      if (!isFinite(contacts[i]) || contacts[i].collider >= m_memory.colliders.size())
        refuse(contactName(list, i) + "has no collider, or numbers that are not finite");
  }

  // Gives each slab its contacts.
  template <class From, class To>
  void deal(char const* list, std::vector<From> const& contacts, std::vector<To> SlabContacts::* target,
            uint32_t ContactStarts::* start) {
    size_t next = 0;
    for (SlabContacts& slab : m_set.slabs)
      for (uint32_t k = slab.begin; k < slab.end; ++k) {
        if (start)
          m_set.start[k].*start = static_cast<uint32_t>((slab.*target).size());
        for (; next < contacts.size() && contacts[next].first == k; ++next) {
          To contact{};
          static_cast<From&>(contact) = contacts[next];
          (slab.*target).push_back(contact);
        }
      }
    if (next < contacts.size())
      refuse(contactName(list, next) + "is out of order, or its first particle is not there");
  }

  EngineMemory const& m_memory;
  size_t m_count;
  ContactSet m_set;
};

} // namespace

EngineMemory Engine::memory() const {
  EngineMemory memory;
  memory.step = m_settings.dt;
  memory.subStep = m_subStep;
  memory.order = m_now.order;
  for (Ball const& ball : m_balls) {
    memory.moved.push_back(isFinite(ball.moved) ? ball.moved : Float3());
    memory.radii.push_back(ball.radius);
  }
  for (uint32_t i = 0; i < m_now.numSlabs; ++i) {
    SlabContacts const& slab = m_now.slabs[i];
    memory.slabEnds.push_back(slab.end);
    append(memory.inside, slab.inside);
    append(memory.across, slab.across);
    append(memory.walls, slab.walls);
    append(memory.bodies, slab.bodies);
    append(memory.sensors, slab.sensors);
  }
  m_colliders.remember(memory);
  std::erase_if(memory.expected, [](auto const& body) { return !isFinite(body); });
  return memory;
}

void Engine::restore(EngineMemory const& memory, size_t numParticles) {
  if (!(memory.step > 0) || !std::isfinite(memory.step) || !(memory.subStep > 0) ||
      !std::isfinite(memory.subStep))
    refuse("'step' and 'subStep' must be finite and larger than zero");
  std::unordered_set<zor::RigidBody const*> known;
  for (EngineMemory::Expected const& each : memory.expected)
    if (!isFinite(each) || !known.insert(each.body).second)
      refuse("body '" + each.body->getName() + "' of 'expected' stands twice, or isn't finite");
  ContactSet set = ContactBuilder(memory, numParticles).take();
  m_now = std::move(set);
  m_balls.assign(memory.order.size(), Ball());
  for (size_t k = 0; k < m_balls.size(); ++k) {
    m_balls[k].moved = memory.moved[k];
    m_balls[k].radius = memory.radii[k];
  }
  m_settings.dt = memory.step;
  m_subStep = memory.subStep;
  m_colliders.restore(memory);
  m_geometries.clear();
  for (EngineMemory::Part const& part : memory.colliders)
    m_geometries.emplace_back(part.geometry);
}

} // namespace zorParticles
