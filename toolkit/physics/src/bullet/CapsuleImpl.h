#pragma once

#include "bullet/ConvexImpl.h"

namespace zorBullet {

class CapsuleImpl final : public ConvexImpl {
public:
  CapsuleImpl(double radius, double height);

  void build(btTransform const& local, bool moving, LeafSet& leaves) const override;
  bool castRay(Ray const& ray, Hit& hit) const override;
  void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const override;
  MassData massData() const override;
  btVector3 support(btVector3 const& direction) const override;

private:
  double m_radius;
  double m_half; // half of the length
};

} // namespace zorBullet
