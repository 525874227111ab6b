#pragma once

#include <zor/RigidBody.h>
#include <zorCollide/RayHit.h>

namespace zorSDK {

/** What is found under the mouse: the point of a geometry, and the body that carries it. */
class PickResult : public zorCollide::RayHit {
public:
  /** Creates a miss. */
  PickResult() = default;

#ifndef SWIG
  explicit PickResult(zorCollide::RayHit const& hit) : zorCollide::RayHit(hit) {}
#endif

  /** \return The body of the geometry that was met; null for a miss or a geometry without a body. */
  zor::RigidBody* getRigidBody() const;

  /** \return True if a body was met that moves by forces, so that it can be dragged. */
  bool isDynamic() const;
};

} // namespace zorSDK
