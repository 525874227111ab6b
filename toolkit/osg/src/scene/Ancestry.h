#pragma once

#include <functional>

#include <osg/Group>

namespace zorOSG {

/** \return true if a test passes for the node or any node above it; each is tested once */
bool isAnyAtOrAbove(osg::Node const& node, std::function<bool(osg::Node const&)> const& test);

/** \return true if top is the node itself or anywhere above it */
inline bool isAtOrBelow(osg::Node const* node, osg::Node const* top) {
  while (node != top && node->getNumParents() == 1)
    node = node->getParent(0);
  return node == top || (node->getNumParents() > 0 &&
                         isAnyAtOrAbove(*node, [top](osg::Node const& above) { return &above == top; }));
}

/**
 * A scene graph without an end would be walked forever.
 * Throws std::invalid_argument if the child is the parent itself or above it. Null is no child of anything.
 */
void requireNoCircle(char const* function, osg::Group const* parent, osg::Node const* child);

} // namespace zorOSG
