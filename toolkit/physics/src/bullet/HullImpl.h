#pragma once

#include <zor/Vec3.h>
#include <zor/Vector.h>

#include "bullet/ConvexImpl.h"
#include "bullet/Hull.h"

namespace zorBullet {

class HullImpl final : public ConvexImpl {
public:
  /**
   * \param hull - with a volume
   * \param vertices - of the triangles that hits name; empty when those are the hull's own
   * \param indices - three a triangle
   */
  HullImpl(Hull hull, zor::Vec3Vector const& vertices, zor::UInt32Vector const& indices);

  void build(btTransform const& local, bool moving, LeafSet& leaves) const override;
  bool castRay(Ray const& ray, Hit& hit) const override;
  void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const override;
  MassData massData() const override;
  btVector3 support(btVector3 const& direction) const override;

private:
  long findTriangle(Ray const& ray) const;

  Hull m_hull;
  std::vector<btVector3> m_vertices;
  std::vector<zor::UInt32> m_indices;
};

/** Where a sphere may touch a hull; as ShapeImpl::closest. */
void closestOnHull(Hull const& hull, btVector3 const& center, double reach, SurfacePoints& found);

/** The engine shape of a hull, with a margin that shows little. */
std::unique_ptr<btCollisionShape> makeHullShape(std::vector<btVector3> const& corners);

} // namespace zorBullet
