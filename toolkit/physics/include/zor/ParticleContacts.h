#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>

namespace zor {

/**
 * The contacts of a particle system in its last step: one row each in vectors of the same length. A copy,
 * which stays as it is.
 */
class ParticleContacts {
public:
  /** Stands in the place of the second particle where the second is a geometry. */
  enum : zor::UInt32 {
    NO_PARTICLE = 0xffffffffu ///< In place of an index: the other one is a geometry.
  };

  /** \return number of contacts */
  zor::UInt getNumContacts() const { return particles1.size(); }

  /**
   * \param contact - less than the number of contacts, else std::out_of_range
   * \return the geometry that a particle touches, or null where it touches a particle
   */
  zorCollide::Geometry* getGeometry(zor::UInt contact) const;

  /** \return index of the first particle of each contact */
  zor::UInt32Vector const& getParticles1() const { return particles1; }
  /** \return index of the second particle, NO_PARTICLE where the second is a geometry */
  zor::UInt32Vector const& getParticles2() const { return particles2; }
  /** \return points in the world (m) */
  zor::Vec3Vector const& getPoints() const { return points; }
  /** \return unit normals, towards the first particle */
  zor::Vec3Vector const& getNormals() const { return normals; }
  /** \return penetrations (m); a little negative where the two just part */
  zor::RealVector const& getDepths() const { return depths; }
  /** \return forces along the normal (N), the mean of the step; 0 for a sensor */
  zor::RealVector const& getNormalForces() const { return normalForces; }
  /** \return friction forces on the first particle (N) */
  zor::Vec3Vector const& getFrictionForces() const { return frictionForces; }

#ifndef SWIG
  zor::UInt32Vector particles1, particles2;
  zor::Vec3Vector points, normals, frictionForces;
  zor::RealVector depths, normalForces;
  zor::Vector<zor::ref_ptr<zorCollide::Geometry>> geometries;
#endif
};

} // namespace zor
