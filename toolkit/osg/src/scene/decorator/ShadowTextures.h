#pragma once

#include "ShadowFit.h"

#include <osg/StateSet>
#include <osg/Texture2D>
#include <osg/ref_ptr>

namespace zorOSG {

/** \param compared - looked up by comparing a depth, else read as it is */
osg::ref_ptr<osg::Texture2D> makeDepthTexture(int width, int height, bool compared);

/** A texture of two numbers a texel, filtered when it is looked up. */
osg::ref_ptr<osg::Texture2D> makeSilhouetteTexture(int size);

/** \return state that gives the scene's program a shadow texture */
osg::ref_ptr<osg::StateSet> makeShadowState(osg::Texture2D& texture);

/** \return takes eye coordinates to coordinates and depth in the texture, all from 0 to 1 */
osg::Matrixd toTexture(osg::Matrixd const& sceneToEye, ShadowFit const& fit);

} // namespace zorOSG
