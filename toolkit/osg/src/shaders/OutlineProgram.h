#pragma once

#include <osg/Program>

namespace zorOSG {

/**
 * \return program that draws triangles wider by `zor_outlineReach` (in normalized device coordinates, to the
 * sides and up) in `zor_outlineColor`: all of them a little nearer than they are, or, unless `zor_outlineAll`
 * is set, those that face away where they are
 */
osg::Program& outlineProgram();

} // namespace zorOSG
