#include <zor/Emitter.h>

#include <numbers>

#include "zor/Checks.h"

namespace zor {

Emitter::Emitter(ParticleSystem* particleSystem, ParticleDistribution* distribution,
                 zorCollide::Geometry* geometry, Real rate)
    : m_particles(&checkNotNull(particleSystem, "Emitter")) {
  setDistribution(distribution);
  setGeometry(geometry);
  setRate(rate);
}

void Emitter::setDistribution(ParticleDistribution* distribution) {
  m_distribution = &checkNotNull(distribution, "Emitter::setDistribution");
  forgetPiece();
}

bool Emitter::canEmit() const {
  return m_particles->getSimulation() && m_distribution->getNumModels() > 0;
}

EmitterBase::Piece Emitter::drawPiece(RandomGenerator& generator) {
  m_model = m_distribution->getModel(m_distribution->draw(generator));
  m_radius = m_model->getRadius().sample(generator);
  m_lifetime = m_model->getLifetime().sample(generator);
  Material const* const material =
      m_model->getMaterial() ? m_model->getMaterial() : m_particles->getMaterial();
  Real const volume = 4.0 / 3.0 * std::numbers::pi * m_radius * m_radius * m_radius;
  return {volume * material->getDensity(), volume, m_radius};
}

void Emitter::place(zorSDK::Simulation&, Vec3 const& position, Vec3 const& velocity, RandomGenerator&) {
  UInt const index = m_particles->addParticle(position, m_radius, velocity, m_model->getMaterial());
  m_particles->setColor(index, m_model->getColor());
  m_particles->setLifetime(index, m_lifetime);
}

} // namespace zor
