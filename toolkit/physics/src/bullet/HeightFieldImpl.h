#pragma once

#include <memory>

#include "bullet/HeightGrid.h"
#include "bullet/ShapeImpl.h"

namespace zorBullet {

class HeightFieldImpl final : public ShapeImpl {
public:
  explicit HeightFieldImpl(std::shared_ptr<HeightGrid const> grid) : m_grid(std::move(grid)) {}

  void build(btTransform const& local, bool moving, LeafSet& leaves) const override;
  bool castRay(Ray const& ray, Hit& hit) const override;
  void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const override;
  MassData massData() const override { return MassData(); }
  void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const override;
  bool canMove() const override { return false; }

private:
  bool clipToBox(Ray const& ray, double& enter, double& exit) const;
  bool castOnCell(Ray const& ray, size_t x, size_t y, Hit& hit) const;

  std::shared_ptr<HeightGrid const> m_grid;
};

} // namespace zorBullet
