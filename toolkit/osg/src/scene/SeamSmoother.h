#pragma once

#include <osg/Geometry>

namespace zorOSG {

/**
 * Smooths normals over vertices that lie at one place but are separate, as along the seams of texture
 * coordinates. Needs a normal a vertex; other meshes stay as they are.
 * \param creaseAngle - faces that lean further from a vertex's normal are another surface (radians)
 */
void smoothSeams(osg::Geometry& mesh, float creaseAngle);

} // namespace zorOSG
