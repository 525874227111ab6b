#pragma once

#include <osg/Group>
#include <osg/MatrixTransform>

#include <zor/AffineMatrix4x4.h>
#include <zor/Constraint.h>
#include <zor/Frame.h>
#include <zor/RigidBody.h>
#include <zorCollide/Geometry.h>

namespace zorOSG {

/**
 * Creates red, green and blue axes for x, y and z. The node belongs to no group yet: add it to one.
 * \param scale - length of each axis (m); must be positive, else std::invalid_argument
 * \param width - line width (pixels); must be positive, else std::invalid_argument
 * \return a new node
 */
osg::MatrixTransform* createAxes(float scale = 1.0f, float width = 3.0f);

/**
 * Creates axes that follow a geometry.
 * \param geometry - the geometry, which must have a visual below root to follow; null uses root as parent
 * \param frame - placement relative to the geometry; null means its model centre
 * \param root - the group to search for the geometry's node; null gives null
 * \param scale - length of each axis (m)
 * \param width - line width (pixels)
 * \return the new node, owned by its parent, or null when there is nothing to attach it to
 */
osg::MatrixTransform* createAxes(zorCollide::Geometry* geometry, zor::Frame* frame, osg::Group* root,
                                 float scale = 1.0f, float width = 3.0f);

/**
 * Creates axes that follow a geometry.
 * \param geometry - the geometry, which must have a visual below root to follow; null uses root as parent
 * \param relTransform - placement relative to the geometry
 * \param root - the group to search for the geometry's node; null gives null
 * \param scale - length of each axis (m)
 * \param width - line width (pixels)
 * \return the new node, owned by its parent, or null when there is nothing to attach it to
 */
osg::MatrixTransform* createAxes(zorCollide::Geometry* geometry, zor::AffineMatrix4x4 const& relTransform,
                                 osg::Group* root, float scale = 1.0f, float width = 3.0f);

/**
 * Creates axes that follow a body.
 * \param body - the body; null uses root as parent
 * \param frame - placement relative to the body; null means its model centre
 * \param root - the group that gets and owns the node; null gives null
 * \param scale - length of each axis (m)
 * \param width - line width (pixels)
 * \return the new node, owned by root
 */
osg::MatrixTransform* createAxes(zor::RigidBody* body, zor::Frame* frame, osg::Group* root,
                                 float scale = 1.0f, float width = 3.0f);

/**
 * Creates axes that follow a body.
 * \param body - the body; null uses root as parent
 * \param relTransform - placement relative to the body
 * \param root - the group that gets and owns the node; null gives null
 * \param scale - length of each axis (m)
 * \param width - line width (pixels)
 * \return the new node, owned by root
 */
osg::MatrixTransform* createAxes(zor::RigidBody* body, zor::AffineMatrix4x4 const& relTransform,
                                 osg::Group* root, float scale = 1.0f, float width = 3.0f);

/**
 * Creates axes at a fixed place.
 * \param transform - placement in the coordinates of root
 * \param root - the group that gets and owns the node; null gives null
 * \param scale - length of each axis (m)
 * \param width - line width (pixels)
 * \return the new node, owned by root
 */
osg::MatrixTransform* createAxes(zor::AffineMatrix4x4 const& transform, osg::Group* root, float scale = 1.0f,
                                 float width = 3.0f);

/**
 * Creates axes that follow a constraint's attachment.
 * \param constraint - the constraint; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \param scale - length of each axis (m)
 * \param width - line width (pixels)
 * \return the new node, owned by root
 */
osg::MatrixTransform* createAxes(zor::Constraint* constraint, osg::Group* root, float scale = 1.0f,
                                 float width = 3.0f);

} // namespace zorOSG
