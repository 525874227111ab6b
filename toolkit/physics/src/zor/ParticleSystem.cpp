#include <zor/ParticleSystem.h>

#include <algorithm>
#include <cmath>

#include "bullet/Check.h"
#include "particles/ParticleSystemImpl.h"
#include "zor/Checks.h"

namespace zor {

namespace {

using zorParticles::MOST_PARTICLES;

size_t checkIndex(zorParticles::ParticleSystemImpl const& impl, UInt index, char const* where) {
  zorBullet::checkIndex(where, index, impl.store.size());
  return index;
}

void checkRoom(zorParticles::ParticleSystemImpl const& impl, UInt more, char const* where) {
  if (more > MOST_PARTICLES - std::min(MOST_PARTICLES, impl.store.size()))
    throw std::invalid_argument(std::string(where) + ": more than " + std::to_string(MOST_PARTICLES) +
                                " particles");
}

void checkColor(Vec4f const& color, char const* where) {
  for (size_t i = 0; i < 4; ++i)
    if (!std::isfinite(color[i]))
      throw std::invalid_argument(std::string(where) + ": colour is not finite");
}

template <class Scalar, class Row>
ParticleArray show(zorParticles::SharedArray<Row> const& array, ParticleArray::Element element,
                   bool writable) {
  return ParticleArray::of<Row, Scalar>(array.storage(), array.size(), element, writable);
}

template <class Row>
ParticleArray showReals(zorParticles::SharedArray<Row> const& array, bool writable) {
  return show<Real>(array, ParticleArray::Element::REAL, writable);
}

UInt checkCount(UInt count, UInt most, char const* where) {
  if (count < 1 || count > most)
    throw std::invalid_argument(std::string(where) + ": " + std::to_string(count) + " is not 1 to " +
                                std::to_string(most));
  return count;
}

} // namespace

ParticleSystem::ParticleSystem(String const& name)
    : Object(name), m_impl(std::make_unique<zorParticles::ParticleSystemImpl>()) {}

ParticleSystem::~ParticleSystem() = default;

UInt ParticleSystem::addParticle(Vec3 const& position, Real radius, Vec3 const& velocity,
                                 Material* material) {
  char const* const where = "ParticleSystem::addParticle";
  checkFinite(position, where);
  checkPositive(radius, where);
  checkFinite(velocity, where);
  checkRoom(*m_impl, 1, where);
  return m_impl->add(position, radius, velocity, m_impl->indexOf(material ? *material : *m_impl->material));
}

UInt ParticleSystem::addParticles(Vec3Vector const& positions, Real radius) {
  return addParticles(positions, RealVector{radius}, Vec3Vector());
}

UInt ParticleSystem::addParticles(Vec3Vector const& positions, RealVector const& radii,
                                  Vec3Vector const& velocities) {
  char const* const where = "ParticleSystem::addParticles";
  auto const checkSize = [&](size_t size, char const* what) {
    if (size != positions.size() && size != 1)
      throw std::invalid_argument(std::string(where) + ": " + std::to_string(positions.size()) +
                                  " positions and " + std::to_string(size) + " " + what);
  };
  checkSize(radii.size(), "radii");
  if (!velocities.empty())
    checkSize(velocities.size(), "velocities");
  for (Vec3 const& position : positions)
    checkFinite(position, where);
  for (Real const radius : radii)
    checkPositive(radius, where);
  for (Vec3 const& velocity : velocities)
    checkFinite(velocity, where);
  checkRoom(*m_impl, positions.size(), where);
  UInt const first = getNumParticles();
  reserve(first + positions.size());
  uint32_t const material = m_impl->indexOf(*m_impl->material);
  for (size_t i = 0; i < positions.size(); ++i)
    m_impl->add(positions[i], radii[radii.size() == 1 ? 0 : i],
                velocities.empty() ? Vec3() : velocities[velocities.size() == 1 ? 0 : i], material);
  return first;
}

void ParticleSystem::removeParticle(UInt index) {
  checkIndex(*m_impl, index, "ParticleSystem::removeParticle");
  m_impl->removeUnless([index](size_t i) { return i != index; });
}

UInt ParticleSystem::removeParticles(UInt32Vector const& indices) {
  std::vector<bool> marked(getNumParticles());
  for (UInt32 const index : indices)
    marked[checkIndex(*m_impl, index, "ParticleSystem::removeParticles")] = true;
  return m_impl->removeUnless([&](size_t i) { return !marked[i]; });
}

UInt ParticleSystem::removeOutside(Vec3 const& lower, Vec3 const& upper) {
  checkFinite(lower, "ParticleSystem::removeOutside");
  checkFinite(upper, "ParticleSystem::removeOutside");
  return m_impl->removeUnless([&](size_t i) {
    Vec3 const& p = m_impl->store.position[i];
    return p[0] >= lower[0] && p[1] >= lower[1] && p[2] >= lower[2] && p[0] <= upper[0] && p[1] <= upper[1] &&
           p[2] <= upper[2];
  });
}

UInt ParticleSystem::removeInside(Vec3 const& lower, Vec3 const& upper) {
  checkFinite(lower, "ParticleSystem::removeInside");
  checkFinite(upper, "ParticleSystem::removeInside");
  return m_impl->removeUnless([&](size_t i) {
    Vec3 const& p = m_impl->store.position[i];
    return !(p[0] >= lower[0] && p[1] >= lower[1] && p[2] >= lower[2] && p[0] <= upper[0] &&
             p[1] <= upper[1] && p[2] <= upper[2]);
  });
}

void ParticleSystem::clear() {
  m_impl->clear();
}

void ParticleSystem::reserve(UInt count) {
  checkRoom(*m_impl, count > getNumParticles() ? count - getNumParticles() : 0, "ParticleSystem::reserve");
  m_impl->store.reserve(count);
}

UInt ParticleSystem::getNumParticles() const {
  return m_impl->store.size();
}

UInt ParticleSystem::getParticleId(UInt index) const {
  return m_impl->store.id[checkIndex(*m_impl, index, "ParticleSystem::getParticleId")];
}

void ParticleSystem::setPosition(UInt index, Vec3 const& position) {
  checkFinite(position, "ParticleSystem::setPosition");
  m_impl->store.position[checkIndex(*m_impl, index, "ParticleSystem::setPosition")] = position;
}

Vec3 ParticleSystem::getPosition(UInt index) const {
  return m_impl->store.position[checkIndex(*m_impl, index, "ParticleSystem::getPosition")];
}

void ParticleSystem::setVelocity(UInt index, Vec3 const& velocity) {
  checkFinite(velocity, "ParticleSystem::setVelocity");
  m_impl->store.velocity[checkIndex(*m_impl, index, "ParticleSystem::setVelocity")] = velocity;
}

Vec3 ParticleSystem::getVelocity(UInt index) const {
  return m_impl->store.velocity[checkIndex(*m_impl, index, "ParticleSystem::getVelocity")];
}

void ParticleSystem::setAngularVelocity(UInt index, Vec3 const& velocity) {
  checkFinite(velocity, "ParticleSystem::setAngularVelocity");
  m_impl->store.angularVelocity[checkIndex(*m_impl, index, "ParticleSystem::setAngularVelocity")] = velocity;
}

Vec3 ParticleSystem::getAngularVelocity(UInt index) const {
  return m_impl->store.angularVelocity[checkIndex(*m_impl, index, "ParticleSystem::getAngularVelocity")];
}

void ParticleSystem::setRotation(UInt index, Quat const& rotation) {
  Real const length = std::sqrt(rotation.x() * rotation.x() + rotation.y() * rotation.y() +
                                rotation.z() * rotation.z() + rotation.w() * rotation.w());
  checkPositive(length, "ParticleSystem::setRotation");
  m_impl->store.rotation[checkIndex(*m_impl, index, "ParticleSystem::setRotation")] = rotation * (1 / length);
}

Quat ParticleSystem::getRotation(UInt index) const {
  return m_impl->store.rotation[checkIndex(*m_impl, index, "ParticleSystem::getRotation")];
}

void ParticleSystem::addForce(UInt index, Vec3 const& force) {
  checkFinite(force, "ParticleSystem::addForce");
  m_impl->store.force[checkIndex(*m_impl, index, "ParticleSystem::addForce")] += force;
}

Vec3 ParticleSystem::getForce(UInt index) const {
  return m_impl->store.force[checkIndex(*m_impl, index, "ParticleSystem::getForce")];
}

void ParticleSystem::setRadius(UInt index, Real radius) {
  checkPositive(radius, "ParticleSystem::setRadius");
  size_t const i = checkIndex(*m_impl, index, "ParticleSystem::setRadius");
  m_impl->store.radius[i] = radius;
  m_impl->store.mass[i] = m_impl->massOf(radius, m_impl->store.material[i]);
}

Real ParticleSystem::getRadius(UInt index) const {
  return m_impl->store.radius[checkIndex(*m_impl, index, "ParticleSystem::getRadius")];
}

void ParticleSystem::setMass(UInt index, Real mass) {
  checkPositive(mass, "ParticleSystem::setMass");
  m_impl->store.mass[checkIndex(*m_impl, index, "ParticleSystem::setMass")] = mass;
}

Real ParticleSystem::getMass(UInt index) const {
  return m_impl->store.mass[checkIndex(*m_impl, index, "ParticleSystem::getMass")];
}

void ParticleSystem::setColor(UInt index, Vec4f const& color) {
  checkColor(color, "ParticleSystem::setColor");
  m_impl->store.color[checkIndex(*m_impl, index, "ParticleSystem::setColor")] = color;
}

Vec4f ParticleSystem::getColor(UInt index) const {
  return m_impl->store.color[checkIndex(*m_impl, index, "ParticleSystem::getColor")];
}

void ParticleSystem::setLifetime(UInt index, Real lifetime) {
  if (!(lifetime >= 0))
    throw std::invalid_argument("ParticleSystem::setLifetime: " + std::to_string(lifetime) + " is negative");
  m_impl->store.lifetime[checkIndex(*m_impl, index, "ParticleSystem::setLifetime")] = lifetime;
}

Real ParticleSystem::getLifetime(UInt index) const {
  return m_impl->store.lifetime[checkIndex(*m_impl, index, "ParticleSystem::getLifetime")];
}

void ParticleSystem::setEnable(UInt index, bool enable) {
  m_impl->store.enabled[checkIndex(*m_impl, index, "ParticleSystem::setEnable")] = enable ? 1 : 0;
}

bool ParticleSystem::getEnable(UInt index) const {
  return m_impl->store.enabled[checkIndex(*m_impl, index, "ParticleSystem::getEnable")] != 0;
}

void ParticleSystem::setParticleMaterial(UInt index, Material* material) {
  size_t const i = checkIndex(*m_impl, index, "ParticleSystem::setParticleMaterial");
  uint32_t const place = m_impl->indexOf(material ? *material : *m_impl->material);
  m_impl->store.material[i] = place;
  m_impl->store.mass[i] = m_impl->massOf(m_impl->store.radius[i], place);
}

Material* ParticleSystem::getParticleMaterial(UInt index) const {
  return m_impl
      ->materials[m_impl->store.material[checkIndex(*m_impl, index, "ParticleSystem::getParticleMaterial")]]
      .get();
}

ParticleArray ParticleSystem::getPositions() const {
  return showReals(m_impl->store.position, true);
}

ParticleArray ParticleSystem::getVelocities() const {
  return showReals(m_impl->store.velocity, true);
}

ParticleArray ParticleSystem::getAngularVelocities() const {
  return showReals(m_impl->store.angularVelocity, true);
}

ParticleArray ParticleSystem::getRotations() const {
  return showReals(m_impl->store.rotation, false);
}

ParticleArray ParticleSystem::getForces() const {
  return showReals(m_impl->store.force, true);
}

ParticleArray ParticleSystem::getRadii() const {
  return showReals(m_impl->store.radius, false);
}

ParticleArray ParticleSystem::getMasses() const {
  return showReals(m_impl->store.mass, false);
}

ParticleArray ParticleSystem::getColors() const {
  return show<float>(m_impl->store.color, ParticleArray::Element::FLOAT, true);
}

ParticleArray ParticleSystem::getLifetimes() const {
  return showReals(m_impl->store.lifetime, true);
}

ParticleArray ParticleSystem::getEnabled() const {
  return show<uint8_t>(m_impl->store.enabled, ParticleArray::Element::BYTE, true);
}

ParticleArray ParticleSystem::getParticleIds() const {
  return show<uint64_t>(m_impl->store.id, ParticleArray::Element::INTEGER, false);
}

void ParticleSystem::setMaterial(Material* material) {
  m_impl->setMaterial(material);
}

Material* ParticleSystem::getMaterial() const {
  return m_impl->material.get();
}

void ParticleSystem::setDefaultColor(Vec4f const& color) {
  checkColor(color, "ParticleSystem::setDefaultColor");
  m_impl->color = color;
}

Vec4f ParticleSystem::getDefaultColor() const {
  return m_impl->color;
}

void ParticleSystem::setRollingResistance(Real coefficient) {
  checkNotNegative(coefficient, "ParticleSystem::setRollingResistance");
  m_impl->rollingResistance = coefficient;
}

Real ParticleSystem::getRollingResistance() const {
  return m_impl->rollingResistance;
}

void ParticleSystem::setNumSubSteps(UInt count) {
  m_impl->subSteps = static_cast<uint32_t>(checkCount(count, 100, "ParticleSystem::setNumSubSteps"));
}

UInt ParticleSystem::getNumSubSteps() const {
  return m_impl->subSteps;
}

void ParticleSystem::setNumThreads(UInt count) {
  m_impl->threads = static_cast<uint32_t>(checkCount(count, 64, "ParticleSystem::setNumThreads"));
}

UInt ParticleSystem::getNumThreads() const {
  return m_impl->threads;
}

void ParticleSystem::setEnable(bool enable) {
  m_impl->enabled = enable;
}

bool ParticleSystem::getEnable() const {
  return m_impl->enabled;
}

void ParticleSystem::addGroup(UInt32 group) {
  auto const at = std::lower_bound(m_impl->groups.begin(), m_impl->groups.end(), group);
  if (at == m_impl->groups.end() || *at != group)
    m_impl->groups.insert(at, group);
}

bool ParticleSystem::removeGroup(UInt32 group) {
  auto const at = m_impl->groups.find(group);
  if (at == m_impl->groups.end())
    return false;
  m_impl->groups.erase(at);
  return true;
}

bool ParticleSystem::hasGroup(UInt32 group) const {
  return m_impl->groups.contains(group);
}

UInt32Vector const& ParticleSystem::getGroups() const {
  return m_impl->groups;
}

ParticleContacts ParticleSystem::getContacts() const {
  return m_impl->contacts();
}

UInt ParticleSystem::getNumContacts() const {
  return m_impl->numContacts();
}

bool ParticleSystem::getBounds(Vec3& lower, Vec3& upper) const {
  bool any = false;
  Vec3 low, high;
  m_impl->forEnabled([&](size_t i) {
    for (size_t axis = 0; axis < 3; ++axis) {
      Real const at = m_impl->store.position[i][axis], radius = m_impl->store.radius[i];
      low[axis] = any ? std::min(low[axis], at - radius) : at - radius;
      high[axis] = any ? std::max(high[axis], at + radius) : at + radius;
    }
    any = true;
  });
  if (any) {
    lower = low;
    upper = high;
  }
  return any;
}

Real ParticleSystem::getTotalMass() const {
  Real sum = 0;
  m_impl->forEnabled([&](size_t i) { sum += m_impl->store.mass[i]; });
  return sum;
}

Vec3 ParticleSystem::getMomentum() const {
  Vec3 sum;
  m_impl->forEnabled([&](size_t i) { sum += m_impl->store.velocity[i] * m_impl->store.mass[i]; });
  return sum;
}

Real ParticleSystem::getKineticEnergy() const {
  Real sum = 0;
  zorParticles::ParticleStore const& store = m_impl->store;
  m_impl->forEnabled([&](size_t i) {
    Real const inertia = 0.4 * store.mass[i] * store.radius[i] * store.radius[i];
    sum += 0.5 * (store.mass[i] * store.velocity[i].length2() + inertia * store.angularVelocity[i].length2());
  });
  return sum;
}

} // namespace zor
