#pragma once

#include <osg/Group>

#include <zor/Vector.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/ParticleSystemDrawable.h>

namespace zorOSG {

/** A list of geometry nodes. The nodes belong to the scene graph, not to the list. */
typedef zor::Vector<zorOSG::GeometryNode*> GeometryNodePtrVector;

/**
 * \param node - the node to test; may be null
 * \return the node itself if it is a geometry node, else null
 */
zorOSG::GeometryNode* asGeometryNode(osg::Node* node);

/**
 * Finds the geometry node of a geometry.
 * \param geometry - the geometry
 * \param root - the group to search below
 * \return the first node in depth-first order, or null when there is none
 */
zorOSG::GeometryNode* findGeometryNode(zorCollide::Geometry const* geometry, osg::Group* root);

/**
 * Finds every geometry node of a geometry; a geometry may have several.
 * \param geometry - the geometry
 * \param root - the group to search below
 * \return the nodes in depth-first order, each once
 */
zorOSG::GeometryNodePtrVector findGeometryNodes(zorCollide::Geometry const* geometry, osg::Group* root);

/**
 * Finds the drawable of a particle system.
 * \param root - the group to search below; null gives null
 * \return the first one in depth-first order, or null when there is none
 */
zorOSG::ParticleSystemDrawable* findParticleSystemDrawable(osg::Group* root);

} // namespace zorOSG
