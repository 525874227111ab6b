#pragma once

#include <osg/Node>

#include <zorCollide/Trimesh.h>

namespace zorOSG {

/**
 * Extracts all triangle data below a node and merges it into one triangle mesh in world coordinates. Equal
 * vertices are merged and triangles without area dropped.
 * \param node - the node to read; its own parents count for the world coordinates only when it has exactly
 * one path to a root
 * \return a new triangle mesh, which belongs to the caller
 * Throws std::runtime_error when the node is null or has no triangles below it.
 */
zorCollide::Trimesh* createTrimesh(osg::Node* node);

} // namespace zorOSG
