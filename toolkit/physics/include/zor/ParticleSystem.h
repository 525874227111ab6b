#pragma once

#include <memory>

#include <zor/Material.h>
#include <zor/Object.h>
#include <zor/ParticleArray.h>
#include <zor/ParticleContacts.h>
#include <zor/Quat.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>
#include <zor/Vector.h>

namespace zorSDK {
class Simulation;
class SimulationImpl;
} // namespace zorSDK

#ifndef SWIG
namespace zorParticles {
class ParticleSystemImpl;
} // namespace zorParticles
#endif

namespace zor {

/**
 * Many spheres that move by forces and contacts: sand, ore, balls. They touch each other and the geometries
 * of the simulation, with friction, restitution and rolling resistance, and push its bodies. Particles of two
 * systems don't meet.
 *
 * A particle is known by its index, 0 to getNumParticles() - 1. Removing particles moves those behind them
 * up; getParticleId stays the same. The result of a step doesn't depend on the number of threads, to the last
 * bit.
 *
 * Setters throw std::out_of_range for an index that is too large and std::invalid_argument for a value that
 * isn't finite or not in its range, and then change nothing.
 */
class ParticleSystem : public zor::Object {
public:
  /** \param name - name, used for look-up; need not be unique */
  explicit ParticleSystem(zor::String const& name = "");

  /**
   * Adds a particle. Its mass follows from the radius and the density of the material.
   * \param position - of its centre (m)
   * \param radius - larger than zero (m)
   * \param velocity - (m/s)
   * \param material - what it is made of; null for the system's material
   * \return the index
   */
  zor::UInt addParticle(zor::Vec3 const& position, zor::Real radius, zor::Vec3 const& velocity = zor::Vec3(),
                        zor::Material* material = nullptr);

  /**
   * Adds many particles of the same radius, made of the system's material.
   * \param positions - of the centres (m)
   * \param radius - larger than zero (m)
   * \return the index of the first
   */
  zor::UInt addParticles(zor::Vec3Vector const& positions, zor::Real radius);

  /**
   * Adds many particles, made of the system's material.
   * \param positions - of the centres (m)
   * \param radii - one each, or one for all (m)
   * \param velocities - one each, one for all, or none (m/s)
   * \return the index of the first
   */
  zor::UInt addParticles(zor::Vec3Vector const& positions, zor::RealVector const& radii,
                         zor::Vec3Vector const& velocities = zor::Vec3Vector());

  /** \param index - the particle to remove */
  void removeParticle(zor::UInt index);
  /**
   * Removes the particles of a list; an index may stand in it twice.
   * \param indices - the particles
   * \return how many were removed
   */
  zor::UInt removeParticles(zor::UInt32Vector const& indices);
  /**
   * Removes the particles whose centres lie outside a box.
   * \param lower - lower corner (m)
   * \param upper - upper corner (m)
   * \return how many were removed
   */
  zor::UInt removeOutside(zor::Vec3 const& lower, zor::Vec3 const& upper);
  /**
   * Removes the particles whose centres lie inside a box, its sides included.
   * \param lower - lower corner (m)
   * \param upper - upper corner (m)
   * \return how many were removed
   */
  zor::UInt removeInside(zor::Vec3 const& lower, zor::Vec3 const& upper);
  /** Removes all particles. */
  void clear();
  /** Takes memory for a number of particles at once. */
  void reserve(zor::UInt count);

  /** \return number of particles */
  zor::UInt getNumParticles() const;
  /** \return a number that no other particle of the system has or had */
  zor::UInt getParticleId(zor::UInt index) const;

  /** \param position - of the centre (m) */
  void setPosition(zor::UInt index, zor::Vec3 const& position);
  /** \return position of the centre (m) */
  zor::Vec3 getPosition(zor::UInt index) const;
  /** \param velocity - of the centre (m/s) */
  void setVelocity(zor::UInt index, zor::Vec3 const& velocity);
  /** \return velocity of the centre (m/s) */
  zor::Vec3 getVelocity(zor::UInt index) const;
  /** \param velocity - angular velocity (rad/s) */
  void setAngularVelocity(zor::UInt index, zor::Vec3 const& velocity);
  /** \return angular velocity (rad/s) */
  zor::Vec3 getAngularVelocity(zor::UInt index) const;
  /** \param rotation - how far it has rolled; a zero quaternion is an error */
  void setRotation(zor::UInt index, zor::Quat const& rotation);
  /** \return how far it has rolled */
  zor::Quat getRotation(zor::UInt index) const;
  /** \param force - added at the centre for the next step only (N) */
  void addForce(zor::UInt index, zor::Vec3 const& force);
  /** \return sum of the forces added for the next step (N) */
  zor::Vec3 getForce(zor::UInt index) const;
  /** Sets the radius; the mass follows with the density of its material.
   * \param radius - larger than zero (m) */
  void setRadius(zor::UInt index, zor::Real radius);
  /** \return radius (m) */
  zor::Real getRadius(zor::UInt index) const;
  /** Sets a mass that doesn't follow from the density.
   * \param mass - larger than zero (kg) */
  void setMass(zor::UInt index, zor::Real mass);
  /** \return mass (kg) */
  zor::Real getMass(zor::UInt index) const;
  /** \param color - red, green, blue, alpha, 0 to 1 */
  void setColor(zor::UInt index, zor::Vec4f const& color);
  /** \return red, green, blue, alpha */
  zor::Vec4f getColor(zor::UInt index) const;
  /** \param lifetime - time until the particle is removed (s), not negative; infinity for never */
  void setLifetime(zor::UInt index, zor::Real lifetime);
  /** \return time until the particle is removed (s); infinity by default */
  zor::Real getLifetime(zor::UInt index) const;
  /** \param enable - false to take no part: it stands still, touches nothing and isn't drawn */
  void setEnable(zor::UInt index, bool enable);
  /** \return false if the particle takes no part. A step switches particles off whose numbers are not
   * finite. */
  bool getEnable(zor::UInt index) const;
  /** Sets what the particle is made of; its mass follows with the density.
   * \param material - null for the system's material */
  void setParticleMaterial(zor::UInt index, zor::Material* material);
  /** \return what the particle is made of */
  zor::Material* getParticleMaterial(zor::UInt index) const;

  /** \return positions of all particles (m), three numbers each */
  zor::ParticleArray getPositions() const;
  /** \return velocities (m/s), three numbers each */
  zor::ParticleArray getVelocities() const;
  /** \return angular velocities (rad/s), three numbers each */
  zor::ParticleArray getAngularVelocities() const;
  /** \return rotations as quaternions, four numbers each; to be read only */
  zor::ParticleArray getRotations() const;
  /** \return forces for the next step (N), three numbers each */
  zor::ParticleArray getForces() const;
  /** \return radii (m); to be read only */
  zor::ParticleArray getRadii() const;
  /** \return masses (kg); to be read only */
  zor::ParticleArray getMasses() const;
  /** \return red, green, blue and alpha, four numbers of single precision each */
  zor::ParticleArray getColors() const;
  /** \return times until the particles are removed (s) */
  zor::ParticleArray getLifetimes() const;
  /** \return 0 for each particle that takes no part, one byte each */
  zor::ParticleArray getEnabled() const;
  /** \return numbers that no other particle of the system has or had; to be read only */
  zor::ParticleArray getParticleIds() const;

  /** Sets what particles are made of from now on; those that are there keep theirs.
   * \param material - null for the default material */
  void setMaterial(zor::Material* material);
  /** \return what particles are made of; never null */
  zor::Material* getMaterial() const;
  /** \param color - of the particles that are added from now on */
  void setDefaultColor(zor::Vec4f const& color);
  /** \return colour of the particles that are added */
  zor::Vec4f getDefaultColor() const;

  /** Sets what keeps particles from rolling: the torque is at most this times the radius and the normal
   * force.
   * \param coefficient - not negative; round grains 0, sand about 0.2 */
  void setRollingResistance(zor::Real coefficient);
  /** \return rolling resistance; 0 by default */
  zor::Real getRollingResistance() const;

  /** Sets into how many parts a step of the simulation is divided here: more make piles stiffer.
   * \param count - 1 to 100 */
  void setNumSubSteps(zor::UInt count);
  /** \return parts of a step; 4 by default */
  zor::UInt getNumSubSteps() const;
  /** \param count - threads that step the particles, 1 to 64 */
  void setNumThreads(zor::UInt count);
  /** \return threads that step the particles; 2 by default */
  zor::UInt getNumThreads() const;

  /** \param enable - false to let all particles stand still, without contacts */
  void setEnable(bool enable);
  /** \return false if all particles stand still */
  bool getEnable() const;

  /** \param group - number of a collision group; see zorCollide::Space::setEnablePair */
  void addGroup(zor::UInt32 group);
  /** \param group - number of a collision group \return false if the particles are not in the group */
  bool removeGroup(zor::UInt32 group);
  /** \param group - number of a collision group \return true if the particles are in the group */
  bool hasGroup(zor::UInt32 group) const;
  /** \return the collision groups, ascending */
  zor::UInt32Vector const& getGroups() const;

  /** \return the contacts of the last step */
  zor::ParticleContacts getContacts() const;
  /** \return number of contacts in the last step, those that are about to touch included */
  zor::UInt getNumContacts() const;

  /**
   * Gives the smallest box that holds all enabled particles.
   * \param lower - gets the lower corner (m)
   * \param upper - gets the upper corner (m)
   * \return false if there are none; the corners then stay as they are
   */
  bool getBounds(zor::Vec3& lower, zor::Vec3& upper) const;
  /** \return mass of the enabled particles (kg) */
  zor::Real getTotalMass() const;
  /** \return momentum of the enabled particles (kg m/s) */
  zor::Vec3 getMomentum() const;
  /** \return energy of motion and spin of the enabled particles (J) */
  zor::Real getKineticEnergy() const;

  /** \return the simulation that the system is in, or null */
  zorSDK::Simulation* getSimulation() const { return m_simulation; }

#ifndef SWIG
  zorParticles::ParticleSystemImpl& getImpl() const { return *m_impl; }
#endif

protected:
  ~ParticleSystem() override;

private:
  friend class zorSDK::SimulationImpl;

  std::unique_ptr<zorParticles::ParticleSystemImpl> m_impl;
  zorSDK::Simulation* m_simulation = nullptr;
};

/** Particle systems in a row. */
typedef zor::Vector<zor::ref_ptr<zor::ParticleSystem>> ParticleSystemRefVector;

} // namespace zor
