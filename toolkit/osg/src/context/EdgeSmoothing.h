#pragma once

#include <osg/Camera>

namespace zorOSG {

/**
 * Smooths the stair steps of edges in what a camera draws to a surface without multisampling: the picture is
 * drawn into a texture and goes through a filter onto the surface, before final draw callbacks read it. On a
 * software renderer this costs a small part of what several samples per pixel do.
 * Leaves the pixels as they are where the driver cannot do it.
 * \param camera - the camera; callbacks are added before and after its drawing
 */
void smoothEdges(osg::Camera& camera);

} // namespace zorOSG
