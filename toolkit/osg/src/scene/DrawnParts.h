#pragma once

#include <vector>

#include <osg/Node>

#include <zor/Vec3.h>
#include <zorCollide/Geometry.h>

namespace zorOSG {

/** A part of a ray, from 0 at its start to 1 at its end. */
struct RayPart {
  double begin = 0.0;
  double end = 1.0;
  bool operator==(RayPart const&) const = default;
};

/**
 * Finds where clip planes leave something of a geometry to be seen along a ray.
 * \param start - of the ray, in simulation coordinates
 * \param end - of the ray
 * \param top - the visuals at or below it count; null for those anywhere
 * \return the parts, one for each way to a visual; the whole ray for a geometry that no plane cuts, also if
 * it has no visual
 */
std::vector<RayPart> drawnParts(zorCollide::Geometry const& geometry, zor::Vec3 const& start,
                                zor::Vec3 const& end, osg::Node const* top);

} // namespace zorOSG
