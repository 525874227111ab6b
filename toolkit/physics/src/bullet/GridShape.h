#pragma once

#include <memory>

#include <BulletCollision/CollisionDispatch/btCollisionObjectWrapper.h>
#include <BulletCollision/CollisionShapes/btHeightfieldTerrainShape.h>
#include <BulletCollision/NarrowPhaseCollision/btManifoldPoint.h>

#include "bullet/HeightGrid.h"

namespace zorBullet {

/** The engine's height field, which knows its grid. */
class GridShape final : public btHeightfieldTerrainShape {
public:
  BT_DECLARE_ALIGNED_ALLOCATOR();

  /** \param top - height up to which the engine counts the field, more than the grid's lowest */
  GridShape(std::shared_ptr<HeightGrid const> grid, double top);

  /**
   * Turns the normal of a contact with one of the triangles upright when it leans farther than any triangle
   * nearby does: then the engine has pushed towards an edge that is none of the surface's.
   * \param point - the contact point
   * \param triangle - the wrapper of the triangle; one that belongs to no grid is left alone
   * \param isFirst - true if the triangle is the point's first object
   */
  static void straighten(btManifoldPoint& point, btCollisionObjectWrapper const& triangle, bool isFirst);

private:
  double steepest(size_t x, size_t y, btVector3 const& normal) const;

  std::shared_ptr<HeightGrid const> m_grid;
};

} // namespace zorBullet
