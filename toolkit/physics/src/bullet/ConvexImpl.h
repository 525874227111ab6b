#pragma once

#include "bullet/ShapeImpl.h"

namespace zorBullet {

/** A convex form, whose bounds follow from its outermost points. */
class ConvexImpl : public ShapeImpl {
public:
  void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const final;

  /** The outermost point in a direction, which need not have unit length. */
  virtual btVector3 support(btVector3 const& direction) const = 0;
};

} // namespace zorBullet
