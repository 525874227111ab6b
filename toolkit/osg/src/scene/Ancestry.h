#pragma once

namespace osg {
class Group;
class Node;
} // namespace osg

namespace zorOSG {

/** \return true if top is the node itself or anywhere above it */
bool isAtOrBelow(osg::Node const* node, osg::Node const* top);

/**
 * A scene graph without an end would be walked forever.
 * Throws std::invalid_argument if the child is the parent itself or above it. Null is no child of anything.
 */
void requireNoCircle(char const* function, osg::Group const* parent, osg::Node const* child);

} // namespace zorOSG
