#pragma once

#include "bullet/ShapeImpl.h"

namespace zorBullet {

class PlaneImpl final : public ShapeImpl {
public:
  PlaneImpl(btVector3 const& normal, double constant) : m_normal(normal), m_constant(constant) {}

  void build(btTransform const& local, bool moving, LeafSet& leaves) const override;
  bool castRay(Ray const& ray, Hit& hit) const override;
  void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const override;
  MassData massData() const override { return MassData(); }
  void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const override;
  bool canMove() const override { return false; }

private:
  btVector3 m_normal;
  double m_constant;
};

} // namespace zorBullet
