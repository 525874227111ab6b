#pragma once

#include <osg/Program>

namespace zorOSG {

/** \return program that shows the cube map `zor_sky` in the direction of each vertex, as far away as can be
 */
osg::Program& skyProgram();

} // namespace zorOSG
