#pragma once

#include "DebugLines.h"

#include <zorSDK/Simulation.h>

namespace zorOSG {

/** Points of contacts, with normals as long as the smaller partner is wide, from yellow to red by their part
 * of the largest force. */
void drawContacts(zorSDK::Simulation const& simulation, DebugLines& lines);

/** The attachment frames of constraints, the joint's axis as a long line in the colour of its state. */
void drawConstraintAxes(zorSDK::Simulation const& simulation, DebugLines& lines);

/** The boxes along the world's axes that geometries lie in, in the colour of the body's state. */
void drawBoundingBoxes(zorSDK::Simulation const& simulation, DebugLines& lines);

/** Centres of mass with the body's principal axes, and velocities. */
void drawCentersOfMass(zorSDK::Simulation const& simulation, DebugLines& lines);

/** \return the colour that stands for what a geometry does: moving, asleep, fixed, sensor */
osg::Vec4ub stateColor(zorCollide::Geometry const& geometry);

} // namespace zorOSG
