#pragma once

#include <osg/Node>
#include <osg/Texture>

#include <zorOSG/RenderState.h>

namespace zorOSG {

/** Puts a texture on the unit of its role, and tells the scene's program of it. */
void bindTexture(osg::Node& node, osg::Texture& texture, TextureMode mode,
                 osg::StateAttribute::OverrideValue value);

/** Multiplies the texture coordinates of a role; also by 1, since nodes above may have another scale. */
void scaleTexture(osg::Node& node, TextureMode mode, float scaleU, float scaleV,
                  osg::StateAttribute::OverrideValue value);

/** True once a cube map was bound: the scene's program then needs to know how the view is turned. */
bool areCubeMapsUsed();

} // namespace zorOSG
