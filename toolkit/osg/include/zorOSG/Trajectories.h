#pragma once

#include <osg/Geode>
#include <osg/Group>

#include <zor/Types.h>
#include <zor/Vec4.h>
#include <zorOSG/ScalarColorMap.h>
#include <zorSDK/Simulation.h>

namespace zorOSG {

/**
 * Creates a visual of the paths of some bodies' centres of mass: lines that fade towards their older ends. A
 * position is added in every frame before which the simulation has made a step. Bodies that come later leave
 * paths as well, those of bodies that have left fade away, and where the simulation is set back in time the
 * paths start anew. What is shown costs as much for long paths as for short ones, but for drawing them.
 *
 * A path has a gap where a body was put somewhere else: where it is farther from its last position than it
 * can have moved itself. That is taken to be twice the time between the two multiplied by its speed at either
 * end, whichever is greater, and as far as it falls in that time from rest, and the radius of its bounds. A
 * script that moves a body by less than its radius at a time draws a whole path.
 * \param simulation - the simulation, which the visual does not hold; null gives null
 * \param root - the group that gets and owns the node, in the simulation's coordinates; null gives null
 * \param sampling - part of the bodies that leave a path, 0 for none to 1 for all; outside throws
 * std::invalid_argument. Which ones is decided once for each body
 * \param numPositions - positions that a path has at most; a line needs two. More than 10000 throws
 * std::invalid_argument
 * \param colorMap - gives each piece of a path the colour of the body's speed there (m/s), and is held; null
 * gives each body a hue of its own
 * \return the node, owned by root; findRigidBodySystemDrawable finds what it draws
 */
osg::Geode* createRigidBodyTrajectoriesVisual(zorSDK::Simulation* simulation, osg::Group* root,
                                              zor::Real sampling, zor::UInt numPositions,
                                              zorOSG::ScalarColorMap* colorMap = nullptr);

/**
 * Creates a visual of the paths of the origins of all observer frames of a simulation that are enabled, as
 * createRigidBodyTrajectoriesVisual does for bodies. Where a frame's body was put somewhere else, or the
 * frame on another body, its path has a gap; what moves a frame without a body is always drawn.
 * \param simulation - the simulation, which the visual does not hold; null gives null
 * \param root - the group that gets and owns the node, in the simulation's coordinates; null gives null
 * \param numPositions - positions that a path has at most; a line needs two. More than 10000 throws
 * std::invalid_argument
 * \param defaultColor - of the paths: red, green, blue and alpha, each 0 to 1
 * \return the node, owned by root; findFrameTrajectoryDrawable finds what it draws
 */
osg::Geode*
createFrameTrajectoryDrawable(zorSDK::Simulation* simulation, osg::Group* root, zor::UInt numPositions,
                              zor::Vec4f const& defaultColor = zor::Vec4f(0.5f, 0.5f, 0.5f, 1.0f));

} // namespace zorOSG
