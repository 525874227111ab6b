#pragma once

#include <limits>
#include <optional>

#include <zor/Distribution.h>
#include <zor/Object.h>
#include <zor/RandomGenerator.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>

namespace zorSDK {
class Simulation;
class SimulationImpl;
} // namespace zorSDK

namespace zor {

/**
 * Brings things into a simulation at a given rate, anywhere inside a geometry: once added to a simulation, at
 * the start of every step. What is not a whole piece is carried over to the next step, so that rate times
 * time holds to one piece. Where a piece finds no room it waits, and comes when there is some.
 */
class EmitterBase : public zor::Object {
public:
  /** \param geometry - the volume: its shapes must have one, else std::invalid_argument. Usually a sensor, so
   * that nothing bumps into it; it may be part of a moving body, and need not be in the simulation. */
  void setGeometry(zorCollide::Geometry* geometry);
  /** \return the volume, or null */
  zorCollide::Geometry* getGeometry() const { return m_geometry.get(); }

  /**
   * \param rate - not negative; pieces, kg or m3 in a second, as setQuantity says
   */
  void setRate(zor::Real rate);
  /** \return rate */
  zor::Real getRate() const { return m_rate; }
  /** \param quantity - what rate and limit are given in */
  void setQuantity(zor::Distribution::Quantity quantity);
  /** \return what rate and limit are given in; COUNT by default */
  zor::Distribution::Quantity getQuantity() const { return m_quantity; }
  /** \param limit - most to emit altogether, in the quantity of the rate; infinity for no limit */
  void setMaximumEmitted(zor::Real limit);
  /** \return most to emit altogether; infinity by default */
  zor::Real getMaximumEmitted() const { return m_limit; }

  /** \param velocity - at the start (m/s), along the axes of the geometry */
  void setVelocity(zor::Vec3 const& velocity);
  /** \return velocity at the start (m/s), along the axes of the geometry */
  zor::Vec3 getVelocity() const { return m_velocity; }

  /** Starts the random numbers again. \param seed - equal seeds give equal results */
  void setSeed(zor::UInt seed);
  /** \param enable - false to emit nothing; the time then doesn't count */
  void setEnable(bool enable) { m_enabled = enable; }
  /** \return false if nothing is emitted */
  bool getEnable() const { return m_enabled; }

  /** \return pieces emitted so far */
  zor::UInt getNumEmitted() const { return m_count; }
  /** \return mass emitted so far (kg) */
  zor::Real getEmittedMass() const { return m_mass; }
  /** \return volume emitted so far (m3) */
  zor::Real getEmittedVolume() const { return m_volume; }
  /** \return emitted so far in the quantity of the rate */
  zor::Real getEmitted() const;

  /** \return the simulation that the emitter is in, or null */
  zorSDK::Simulation* getSimulation() const { return m_simulation; }

protected:
  EmitterBase() = default;
  ~EmitterBase() override = default;

#ifndef SWIG
  /** What comes next. */
  struct Piece {
    zor::Real mass;
    zor::Real volume;
    zor::Real radius; // of a sphere about its middle that holds it
  };

  /** Draws what comes next. */
  virtual Piece drawPiece(zor::RandomGenerator& generator) = 0;
  /** Puts it into the simulation. \param velocity - in the world */
  virtual void place(zorSDK::Simulation& simulation, zor::Vec3 const& position, zor::Vec3 const& velocity,
                     zor::RandomGenerator& generator) = 0;
  /** \return false if there is nothing to draw from or to emit into */
  virtual bool canEmit() const = 0;
  /** Forgets what was drawn, after a change of the distribution. */
  void forgetPiece() { m_next.reset(); }
#endif

private:
  friend class zorSDK::SimulationImpl;
  friend struct zorStream::StateAccess;

  void emit(zor::Real dt);
  zor::Real sizeOf(Piece const& piece) const;
  bool findPlace(zor::Real radius, zor::Vec3& position);
  bool isFree(zor::Vec3 const& position, zor::Real radius) const;

  zor::ref_ptr<zorCollide::Geometry> m_geometry;
  zor::Real m_rate = 0;
  zor::Distribution::Quantity m_quantity = zor::Distribution::COUNT;
  zor::Real m_limit = std::numeric_limits<zor::Real>::infinity();
  zor::Vec3 m_velocity;
  zor::RandomGenerator m_generator;
  bool m_enabled = true;

  zor::Real m_due = 0; // to emit by now, in the quantity of the rate
  std::optional<Piece> m_next;
  zor::UInt m_count = 0;
  zor::Real m_mass = 0;
  zor::Real m_volume = 0;
  zorSDK::Simulation* m_simulation = nullptr;
};

/** Emitters in a row. */
typedef zor::Vector<zor::ref_ptr<zor::EmitterBase>> EmitterRefVector;

} // namespace zor
