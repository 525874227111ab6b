#include <zor/EmitterBase.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <zor/ParticleSystem.h>
#include <zorSDK/Simulation.h>

#include "bullet/Conversions.h"
#include "bullet/GeometryImpl.h"
#include "bullet/ShapeImpl.h"
#include "bullet/SpaceImpl.h"
#include "particles/ParticleSystemImpl.h"
#include "zor/Checks.h"

namespace zor {

namespace {

constexpr int MOST_TRIES = 40;           // to find a place for one piece
constexpr Real ROUNDING = 1e-9;          // of a piece: rate times time is a sum
constexpr UInt MOST_IN_A_STEP = 5000; // the rest comes in the next

/** Signed distance of a point from what a geometry is made of. */
double distanceTo(zorCollide::Geometry const& geometry, zor::Vec3 const& point, double reach, bool solid) {
  btTransform const frame = geometry.getImpl().worldTransform();
  double least = reach;
  for (UInt i = 0; i < geometry.getNumShapes(); ++i) {
    zorBullet::SurfacePoints found;
    btTransform const shape = frame * geometry.getImpl().locals[i];
    geometry.getShape(i)->getImpl().closest(shape.invXform(zorBullet::toBt(point)), reach, solid, found);
    for (zorBullet::SurfacePoint const& at : found)
      least = std::min<double>(least, at.distance);
  }
  return least;
}

} // namespace

void EmitterBase::setGeometry(zorCollide::Geometry* geometry) {
  zorCollide::Geometry& volume = checkNotNull(geometry, "EmitterBase::setGeometry");
  if (volume.getNumShapes() == 0 || !volume.getImpl().canMove())
    throw std::invalid_argument("EmitterBase::setGeometry: geometry '" + volume.getName() +
                                "' has no volume");
  m_geometry = geometry;
}

void EmitterBase::setRate(Real rate) {
  checkNotNegative(rate, "EmitterBase::setRate");
  m_rate = rate;
}

void EmitterBase::setQuantity(Distribution::Quantity quantity) {
  if (quantity != Distribution::COUNT && quantity != Distribution::MASS && quantity != Distribution::VOLUME)
    throw std::invalid_argument("EmitterBase::setQuantity: " + std::to_string(static_cast<int>(quantity)) +
                                " is no quantity");
  m_quantity = quantity;
  m_due = getEmitted();
}

void EmitterBase::setMaximumEmitted(Real limit) {
  if (!(limit >= 0))
    throw std::invalid_argument("EmitterBase::setMaximumEmitted: " + std::to_string(limit) + " is negative");
  m_limit = limit;
}

void EmitterBase::setVelocity(Vec3 const& velocity) {
  checkFinite(velocity, "EmitterBase::setVelocity");
  m_velocity = velocity;
}

void EmitterBase::setSeed(UInt seed) {
  m_generator.setSeed(seed);
  forgetPiece();
}

Real EmitterBase::getEmitted() const {
  switch (m_quantity) {
  case Distribution::MASS:
    return m_mass;
  case Distribution::VOLUME:
    return m_volume;
  default:
    return static_cast<Real>(m_count);
  }
}

Real EmitterBase::sizeOf(Piece const& piece) const {
  return m_quantity == Distribution::MASS     ? piece.mass
         : m_quantity == Distribution::VOLUME ? piece.volume
                                              : 1;
}

void EmitterBase::emit(Real dt) {
  if (!m_enabled || !m_geometry || !canEmit())
    return;
  m_due += m_rate * dt;
  for (UInt i = 0; i < MOST_IN_A_STEP; ++i) {
    if (!m_next)
      m_next = drawPiece(m_generator);
    Real const size = sizeOf(*m_next), after = getEmitted() + size, most = std::min(m_due, m_limit);
    Vec3 position;
    if (after > most + ROUNDING * size || !findPlace(m_next->radius, position))
      return;
    Piece const piece = *m_next;
    m_next.reset();
    place(*m_simulation, position, m_geometry->getTransform().transformVector(m_velocity), m_generator);
    ++m_count;
    m_mass += piece.mass;
    m_volume += piece.volume;
  }
}

bool EmitterBase::findPlace(Real radius, Vec3& position) {
  Vec3 lower, upper;
  m_geometry->getBounds(lower, upper);
  for (int i = 0; i < MOST_TRIES; ++i) {
    for (size_t axis = 0; axis < 3; ++axis)
      position[axis] = lower[axis] + (upper[axis] - lower[axis]) * m_generator.uniform();
    // Thin volumes hold the middles only.
    if (distanceTo(*m_geometry, position, radius, true) <= 0 && isFree(position, radius))
      return true;
  }
  return false;
}

bool EmitterBase::isFree(Vec3 const& position, Real radius) const {
  for (auto const& particles : m_simulation->getParticleSystems()) {
    zorParticles::ParticleStore const& store = particles->getImpl().store;
    for (size_t i = 0; i < store.size(); ++i) {
      Real const apart = radius + store.radius[i];
      if (store.enabled[i] && (store.position[i] - position).length2() < apart * apart)
        return false;
    }
  }
  for (auto const& geometry : m_simulation->getGeometries()) {
    zorBullet::GeometryImpl const& impl = geometry->getImpl();
    if (geometry == m_geometry || !impl.isSolid() || !impl.collisions)
      continue;
    Vec3 lower, upper;
    geometry->getBounds(lower, upper);
    bool near = true;
    for (size_t axis = 0; axis < 3; ++axis)
      near = near && position[axis] > lower[axis] - radius && position[axis] < upper[axis] + radius;
    if (near && distanceTo(*geometry, position, radius, impl.canMove() && geometry->getRigidBody()) < radius)
      return false;
  }
  return true;
}

} // namespace zor
