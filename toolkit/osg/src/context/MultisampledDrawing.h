#pragma once

#include <osg/Camera>

namespace zorOSG {

/**
 * Gives a camera that draws to a surface without multisampling several samples per pixel: it draws into a
 * multisampled buffer, which is resolved into the surface before final draw callbacks read it.
 * Keeps the surface's pixels where the driver cannot do it.
 * \param camera - the camera; its pre- and post-draw callbacks are used
 * \param samples - samples per pixel, lowered to what the driver has
 */
void drawMultisampled(osg::Camera& camera, int samples);

} // namespace zorOSG
