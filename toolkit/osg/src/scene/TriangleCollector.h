#pragma once

#include <osg/Node>

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

namespace zorOSG {

/** Triangles over shared vertices. */
struct Triangles {
  zor::Vec3Vector vertices;
  zor::UInt32Vector indices; ///< three a triangle
};

/**
 * All triangles below a node in world coordinates: those of every kind of primitive and of vertex array,
 * equal vertices merged, without those that have no area. The node's own parents count if they are the only
 * ones.
 */
Triangles collectTriangles(osg::Node& node);

} // namespace zorOSG
