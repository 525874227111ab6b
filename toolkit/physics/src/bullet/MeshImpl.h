#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "bullet/MeshData.h"
#include "bullet/ShapeImpl.h"

namespace zorBullet {

class MeshImpl final : public ShapeImpl {
public:
  MeshImpl(std::shared_ptr<MeshData const> data, size_t numParts);

  void build(btTransform const& local, bool moving, LeafSet& leaves) const override;
  bool castRay(Ray const& ray, Hit& hit) const override;
  void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const override;
  MassData massData() const override { return m_data->massData(); }
  void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const override;

private:
  void buildParts(btTransform const& local, LeafSet& leaves) const;
  std::vector<Hull> const& parts() const; // for particles

  std::shared_ptr<MeshData const> m_data;
  size_t m_numParts;
  mutable std::once_flag m_partsOnce;
  mutable std::vector<Hull> m_parts;
};

} // namespace zorBullet
