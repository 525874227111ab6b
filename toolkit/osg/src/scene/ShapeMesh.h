#pragma once

#include <osg/Geometry>
#include <osg/ref_ptr>

#include <zorCollide/Shape.h>
#include <zorRender/RenderData.h>

namespace zorOSG {

/** The mesh of a shape other than a compound, shared with the visuals of equal shapes. */
osg::ref_ptr<osg::Geometry> shapeMesh(zorCollide::Shape const& shape, float detailRatio);

/** The mesh of render data, shared with the visuals of equal data. Data that do not fit together throw. */
osg::ref_ptr<osg::Geometry> renderDataMesh(zorRender::RenderData const& data);

} // namespace zorOSG
