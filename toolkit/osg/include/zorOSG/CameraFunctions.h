#pragma once

#include <zor/Vec3.h>
#include <zorCollide/GeometryContact.h>
#include <zorCollide/Space.h>

#include <osgGA/NodeTrackerManipulator>

namespace osg {
class Camera;
class Group;
} // namespace osg

namespace osgViewer {
class Viewer;
}

namespace zorOSG {

/**
 * Gives a viewer a camera that orbits a node and follows it.
 * \param viewer - its manipulator is replaced
 * \param node - the node to follow; it gets a child that marks its origin
 * \param eye - initial position, metres
 * \param center - initial point looked at, another than eye
 * \param up - up direction, not along the view
 * \param trackerMode - osgGA::NodeTrackerManipulator's mode: 0 follows the centre, 1 also turns with the node
 * about the up axis, 2 turns with it altogether
 * \return false if viewer or node is null
 * Throws std::invalid_argument for a pose without a direction or for another mode.
 */
bool setOrbitCamera(osgViewer::Viewer* viewer, osg::Group* node, zor::Vec3 const& eye,
                    zor::Vec3 const& center, zor::Vec3 const& up,
                    int trackerMode = osgGA::NodeTrackerManipulator::NODE_CENTER);

/**
 * Finds the points on the near and far planes under a screen position.
 * \param camera - must not be null and must have a viewport
 * \param x - pixels from the left edge
 * \param y - pixels from the lower edge
 * \param near - receives the point on the near plane, in the coordinates that the camera shows
 * \param far - receives the point on the far plane
 */
void getNearFarPoints(osg::Camera const* camera, float x, float y, zor::Vec3& near, zor::Vec3& far);

/**
 * Finds the geometry under a screen position by its exact shape.
 * \param camera - must not be null and must have a viewport
 * \param space - where to look; must not be null
 * \param x - pixels from the left edge
 * \param y - pixels from the lower edge
 * \return contact of the ray with the nearest geometry: the geometry as the first, and one point with its
 * normal; empty if nothing was met
 */
zorCollide::GeometryContact getHoveredGeometryContact(osg::Camera const* camera, zorCollide::Space* space,
                                                      float x, float y);

} // namespace zorOSG
