#pragma once

#include <osg/Node>
#include <osg/ref_ptr>

#include <zorCollide/Geometry.h>

namespace zorOSG {

/** What the collision shapes of a geometry look like, in the geometry's frame. */
osg::ref_ptr<osg::Node> makeShapeVisual(zorCollide::Geometry const& geometry, float detailRatio);

/**
 * The render data of a geometry's shapes, in the geometry's frame; shapes without render data look like
 * themselves. Null if no shape has render data.
 */
osg::ref_ptr<osg::Node> makeRenderDataVisual(zorCollide::Geometry const& geometry, float detailRatio);

} // namespace zorOSG
