#pragma once

#include <osg/Matrixd>
#include <osg/Vec3d>

namespace zorOSG {

/** True if a matrix swaps left and right, and with them the sides of a face. */
inline bool mirrors(osg::Matrixd const& m) {
  osg::Vec3d const x(m(0, 0), m(0, 1), m(0, 2)), y(m(1, 0), m(1, 1), m(1, 2)), z(m(2, 0), m(2, 1), m(2, 2));
  return (x ^ y) * z < 0.0;
}

} // namespace zorOSG
