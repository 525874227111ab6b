#pragma once

#include "bullet/ConvexImpl.h"

namespace zorBullet {

class BoxImpl final : public ConvexImpl {
public:
  explicit BoxImpl(btVector3 const& halfExtents);

  void build(btTransform const& local, bool moving, LeafSet& leaves) const override;
  bool castRay(Ray const& ray, Hit& hit) const override;
  void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const override;
  MassData massData() const override;
  btVector3 support(btVector3 const& direction) const override;

private:
  btVector3 m_half;
};

} // namespace zorBullet
