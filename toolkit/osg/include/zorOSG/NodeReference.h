#pragma once

#include <osg/Geometry>
#include <osg/Group>

// Explicit reference functions for scene-graph classes, named after the class so that a script can call them.
namespace osg {

/**
 * Takes one reference on a group.
 * \param group - the group
 */
void Group_reference(osg::Group* group);

/**
 * Releases one reference of a group and deletes it with the last one.
 * \param group - the group
 */
void Group_unreference(osg::Group* group);

/**
 * Takes one reference on a drawable geometry.
 * \param geometry - the drawable
 */
void Geometry_reference(osg::Geometry* geometry);

/**
 * Releases one reference of a drawable geometry and deletes it with the last one.
 * \param geometry - the drawable
 */
void Geometry_unreference(osg::Geometry* geometry);

} // namespace osg
