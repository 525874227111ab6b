#pragma once

#include <osg/Node>

namespace zorOSG {

/**
 * Smooths the normals of every mesh below a node.
 * \param node - the node; null gives 0
 * \param creaseAngle - edges sharper than this stay sharp (radians)
 * \return the number of meshes smoothed
 */
int smoothNormals(osg::Node* node, float creaseAngle = 1.48353f);

} // namespace zorOSG
