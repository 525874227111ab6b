#pragma once

#include <osg/Program>

namespace zorOSG {

/**
 * \return program that draws triangles wider by `zor_outlineReach` (in normalized device coordinates, to the
 * sides and up) in `zor_outlineColor`: all of them a little nearer than they are, or, unless `zor_outlineAll`
 * is set, those that face away where they are
 */
osg::Program& outlineProgram();

/**
 * \return program for what is below clip planes: triangles are cut by those that have a bit in
 * `zor_outlineCuts`, whose modes must be off, and only the band around what is left is drawn
 */
osg::Program& cutOutlineProgram();

} // namespace zorOSG
