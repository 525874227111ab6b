#pragma once

#include <cstddef>
#include <vector>

#include <LinearMath/btVector3.h>

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

#include "bullet/MassData.h"

namespace zorBullet {

/** The convex hull of points: corners, triangles counter-clockwise seen from outside, and their planes. */
struct Hull {
  std::vector<btVector3> corners;
  std::vector<zor::UInt32> indices; // three a triangle
  std::vector<btVector3> normals;   // one a triangle
  std::vector<double> constants;    // one a triangle; normal * point on it
  double volume = 0.0;

  /** Volume 0 and no triangles when the points lie in one plane. */
  static Hull of(btVector3 const* points, size_t count);

  /** At most `count` corners, those that reach farthest in directions spread evenly. */
  std::vector<btVector3> reducedCorners(size_t count) const;
};

/** Mass at unit density of what closed triangles enclose; inside is behind the counter-clockwise side. */
MassData solidMassData(btVector3 const* vertices, size_t numVertices, zor::UInt32 const* indices,
                       size_t numIndices);

std::vector<btVector3> toBt(zor::Vec3Vector const& points);

} // namespace zorBullet
