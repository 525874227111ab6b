#pragma once

#include <osg/BoundingBox>
#include <osg/Matrixd>

namespace zorOSG {

/** \return the box around a transformed box */
osg::BoundingBoxd transformed(osg::BoundingBox const& box, osg::Matrixd const& matrix);

/**
 * A flat thing that lies lowest of all has nothing below it that its shadow could fall on. Leaving it out
 * keeps a wide ground from taking the shadow map away from the bodies on it.
 * \param box - the thing
 * \param scene - everything there is
 */
bool isGround(osg::BoundingBoxd const& box, osg::BoundingBoxd const& scene);

} // namespace zorOSG
