#pragma once

#include <zor/EmitterBase.h>
#include <zor/ParticleDistribution.h>
#include <zor/ParticleSystem.h>

namespace zor {

/** Emits particles. */
class Emitter : public zor::EmitterBase {
public:
  /**
   * \param particleSystem - gets the particles; not null
   * \param distribution - what to emit; not null
   * \param geometry - as for setGeometry
   * \param rate - as for setRate: particles in a second, unless setQuantity says otherwise
   */
  Emitter(zor::ParticleSystem* particleSystem, zor::ParticleDistribution* distribution,
          zorCollide::Geometry* geometry, zor::Real rate);

  /** \return what gets the particles */
  zor::ParticleSystem* getParticleSystem() const { return m_particles.get(); }
  /** \param distribution - what to emit from now on; not null */
  void setDistribution(zor::ParticleDistribution* distribution);
  /** \return what is emitted */
  zor::ParticleDistribution* getDistribution() const { return m_distribution.get(); }

protected:
  ~Emitter() override = default;

#ifndef SWIG
  Piece drawPiece(zor::RandomGenerator& generator) override;
  void place(zorSDK::Simulation& simulation, zor::Vec3 const& position, zor::Vec3 const& velocity,
             zor::RandomGenerator& generator) override;
  bool canEmit() const override;
#endif

private:
  friend struct zorStream::StateAccess;

  zor::ref_ptr<zor::ParticleSystem> m_particles;
  zor::ref_ptr<zor::ParticleDistribution> m_distribution;
  zor::ref_ptr<zor::ParticleModel> m_model; // of the piece that was drawn
  zor::Real m_radius = 0;
  zor::Real m_lifetime = 0;
};

} // namespace zor
