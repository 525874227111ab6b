#pragma once

#include <osg/Node>
#include <osg/ref_ptr>

#include <zorCollide/Geometry.h>
#include <zorOSG/RigidBodyRenderCache.h>
#include <zorRender/RenderMaterial.h>

namespace zorOSG {

/** How visuals of shapes are made. */
struct ShapeVisualOptions {
  float detailRatio = 1.0f;
  RigidBodyRenderCache::Templates* templates = nullptr; // to take from and to add to; null for none
};

/** What the collision shapes of a geometry look like, in the geometry's frame. */
osg::ref_ptr<osg::Node> makeShapeVisual(zorCollide::Geometry const& geometry,
                                        ShapeVisualOptions const& options);

/**
 * The render data of a geometry's shapes, in the geometry's frame; shapes without render data look like
 * themselves. Null if no shape has render data.
 */
osg::ref_ptr<osg::Node> makeRenderDataVisual(zorCollide::Geometry const& geometry,
                                             ShapeVisualOptions const& options);

/** Gives a node the look of a render material. */
void applyRenderMaterial(osg::Node& node, zorRender::RenderMaterial const& source);

} // namespace zorOSG
