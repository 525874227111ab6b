#pragma once

#include <zor/RigidBody.h>
#include <zorCollide/Geometry.h>

namespace zorOSG {

/** Half the diagonal of a geometry's box (m); 0 where it has no bounds. */
double radiusOf(zorCollide::Geometry const& geometry);

/** As radiusOf(geometry) for the largest geometry of a body. */
double radiusOf(zor::RigidBody const& body);

} // namespace zorOSG
