#pragma once

#include <osg/Program>

namespace zorOSG {

/**
 * \return a new program that copies the texture `picture` and blends along edges of brightness, where lines
 * would show stair steps; `pixelSize` is one over the texture's size. After the fast approximate
 * anti-aliasing of T. Lottes (2009): direction from the brightness of four diagonal neighbours, samples along
 * it.
 */
osg::Program* edgeProgram();

} // namespace zorOSG
