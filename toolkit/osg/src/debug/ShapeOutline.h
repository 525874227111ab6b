#pragma once

#include <osg/Vec3d>
#include <zorCollide/Geometry.h>

#include <utility>
#include <vector>

namespace zorOSG {

/** Line segments in the coordinates of a geometry. */
using Outline = std::vector<std::pair<osg::Vec3d, osg::Vec3d>>;

/** \return the edges of a geometry's shapes, without those between triangles of one plane */
Outline outlineOf(zorCollide::Geometry const& geometry);

} // namespace zorOSG
