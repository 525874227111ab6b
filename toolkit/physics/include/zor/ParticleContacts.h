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
  /** Stands in `particles2` where the second is a geometry. */
  static const zor::UInt32 NO_PARTICLE = 0xffffffffu;

  /** \return number of contacts */
  zor::UInt getNumContacts() const { return particles1.size(); }

  /**
   * \param contact - less than the number of contacts, else std::out_of_range
   * \return the geometry that a particle touches, or null where it touches a particle
   */
  zorCollide::Geometry* getGeometry(zor::UInt contact) const;

  /** Index of the first particle. */
  zor::UInt32Vector particles1;
  /** Index of the second particle, NO_PARTICLE where the second is a geometry. */
  zor::UInt32Vector particles2;
  /** Points in the world (m). */
  zor::Vec3Vector points;
  /** Unit normals, towards the first particle. */
  zor::Vec3Vector normals;
  /** Penetration (m); a little negative where the two just part. */
  zor::RealVector depths;
  /** Forces along the normal (N), the mean of the step; 0 for a sensor. */
  zor::RealVector normalForces;
  /** Friction forces on the first particle (N). */
  zor::Vec3Vector frictionForces;

#ifndef SWIG
  zor::Vector<zor::ref_ptr<zorCollide::Geometry>> geometries;
#endif
};

} // namespace zor
