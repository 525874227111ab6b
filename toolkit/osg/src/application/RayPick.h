#pragma once

#include <zorCollide/GeometryContact.h>
#include <zorCollide/RayHit.h>
#include <zorCollide/Space.h>

#include <osg/Camera>

namespace zorOSG {

/**
 * Finds what is met first. What clip planes have cut away is not met, and the inside that they lay open is.
 * \param where - the caller, for messages
 * \param start - of the ray
 * \param end - of the ray, another point
 * \param onlyDynamics - true to count geometries of dynamic bodies only
 * \param camera - whose scene says what is cut; a camera without one, or null, stands for all scenes
 * \return the nearest hit between two points, or a miss
 * Throws std::invalid_argument unless the points are finite and apart.
 */
zorCollide::RayHit nearestHit(char const* where, zorCollide::Space const& space, zor::Vec3 const& start,
                              zor::Vec3 const& end, bool onlyDynamics, osg::Camera const* camera);

/** \return the hit as a contact with nothing; empty for a miss */
zorCollide::GeometryContact toContact(zorCollide::RayHit const& hit);

} // namespace zorOSG
