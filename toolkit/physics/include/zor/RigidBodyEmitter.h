#pragma once

#include <zor/EmitterBase.h>
#include <zor/RigidBodyDistribution.h>

namespace zor {

/** Emits bodies, each a copy of one in its distribution that shares its shapes. */
class RigidBodyEmitter : public zor::EmitterBase {
public:
  /** \param distribution - as for setDistribution
   * \param geometry - as for setGeometry
   * \param rate - as for setRate: bodies in a second, unless setQuantity says otherwise */
  RigidBodyEmitter(zor::RigidBodyDistribution* distribution, zorCollide::Geometry* geometry, zor::Real rate);

  /** \param distribution - what to emit from now on; not null */
  void setDistribution(zor::RigidBodyDistribution* distribution);
  /** \return what is emitted */
  zor::RigidBodyDistribution* getDistribution() const { return m_distribution.get(); }

  /** \param random - true to turn each body at random, false to keep the rotation of the one that it copies
   */
  void setRandomRotation(bool random) { m_randomRotation = random; }
  /** \return whether bodies are turned at random; true by default */
  bool getRandomRotation() const { return m_randomRotation; }

  /** \return the bodies emitted so far, those that left the simulation since included */
  zor::RigidBodyRefVector const& getBodies() const { return m_bodies; }

protected:
  ~RigidBodyEmitter() override = default;

#ifndef SWIG
  Piece drawPiece(zor::RandomGenerator& generator) override;
  void place(zorSDK::Simulation& simulation, zor::Vec3 const& position, zor::Vec3 const& velocity,
             zor::RandomGenerator& generator) override;
  bool canEmit() const override;
#endif

private:
  friend struct zorStream::StateAccess;

  zor::ref_ptr<zor::RigidBodyDistribution> m_distribution;
  zor::ref_ptr<zor::RigidBody> m_model; // of the piece that was drawn
  zor::Vec3 m_middle;                   // of the bounds, in the model's frame
  bool m_randomRotation = true;
  zor::RigidBodyRefVector m_bodies;
};

} // namespace zor
