#pragma once

#include <cstddef>
#include <vector>

#include "bullet/Hull.h"
#include "bullet/MeshData.h"

namespace zorBullet {

/**
 * Encloses a mesh in up to `count` hulls: cuts the emptiest hull in two, again and again.
 * Not exact: what is hollow stays filled where no cut opens it.
 */
std::vector<Hull> makeConvexParts(MeshData const& mesh, size_t count);

} // namespace zorBullet
