#pragma once

#include <osg/Group>

#include <zor/Vector.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/ParticleSystemDrawable.h>

namespace zorOSG {

class FrameTrajectoryDrawable;
class RigidBodySystemDrawable;

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
 * \return of several, the one that has followed the geometry for longest; null when there is none
 */
zorOSG::GeometryNode* findGeometryNode(zorCollide::Geometry const* geometry, osg::Group* root);

/**
 * Finds every geometry node of a geometry; a geometry may have several.
 * \param geometry - the geometry
 * \param root - the group to search below
 * \return the nodes, each once, in the order in which they were given the geometry
 */
zorOSG::GeometryNodePtrVector findGeometryNodes(zorCollide::Geometry const* geometry, osg::Group* root);

/**
 * Finds the drawable of a particle system.
 * \param root - the group to search below; null gives null
 * \return of several, the one that was made first; null when there is none
 */
zorOSG::ParticleSystemDrawable* findParticleSystemDrawable(osg::Group* root);

/**
 * Finds what draws the bodies of a simulation as a whole: the paths that createRigidBodyTrajectoriesVisual
 * makes.
 * \param root - the group to search below; null gives null
 * \return of several, the one that was made first; null when there is none
 */
zorOSG::RigidBodySystemDrawable* findRigidBodySystemDrawable(osg::Group* root);

/**
 * Finds what createFrameTrajectoryDrawable makes.
 * \param root - the group to search below; null gives null
 * \return of several, the one that was made first; null when there is none
 */
zorOSG::FrameTrajectoryDrawable* findFrameTrajectoryDrawable(osg::Group* root);

} // namespace zorOSG
