#include "bullet/ConvexImpl.h"

namespace zorBullet {

void ConvexImpl::bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const {
  for (int axis = 0; axis < 3; ++axis) {
    btVector3 const direction = frame.getBasis().getRow(axis); // the axis, seen from the shape
    upper[axis] = frame(support(direction))[axis];
    lower[axis] = frame(support(-direction))[axis];
  }
}

} // namespace zorBullet
