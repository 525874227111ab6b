#pragma once

#include <memory>
#include <vector>

#include <BulletCollision/CollisionShapes/btCollisionShape.h>

#include "bullet/MassData.h"
#include "bullet/Ray.h"
#include "bullet/SurfacePoint.h"

namespace zorCollide {
class Shape;
}

namespace zorBullet {

/** Is told when a shape that it holds has changed. */
class ShapeHolder {
public:
  virtual void onShapeChanged() = 0;

protected:
  ~ShapeHolder() = default;
};

/** One engine shape without children, and where it stands in the geometry. */
struct Leaf {
  std::shared_ptr<void const> data;        // what the engine shape reads, where it does not copy
  std::unique_ptr<btCollisionShape> shape; // user pointer: the GeometryImpl it was built for
  btTransform local;                       // frame of the engine shape in the geometry's
};

/** All engine shapes of a geometry. Whoever puts them into a compound holds the set as long as the compound.
 */
typedef std::vector<Leaf> LeafSet;

/** The engine's side of a shape: builds engine shapes and answers exact questions about the ideal form. */
class ShapeImpl {
public:
  virtual ~ShapeImpl() = default;

  /**
   * Adds the engine shapes.
   * \param local - frame of the shape in the geometry's
   * \param moving - for a dynamic body, which cannot use surfaces
   * \param leaves - gets the engine shapes
   */
  virtual void build(btTransform const& local, bool moving, LeafSet& leaves) const = 0;

  /** Keeps the nearest hit; ray and hit are in the shape's frame. \return true if the hit was replaced */
  virtual bool castRay(Ray const& ray, Hit& hit) const = 0;

  /**
   * Adds where a sphere may touch the surface; safe to call from several threads.
   * \param center - of the sphere, in the shape's frame
   * \param reach - points farther from the centre may be left out
   * \param moving - for a dynamic body, in which a mesh is solid
   * \param found - gets the points, in the shape's frame
   */
  virtual void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const = 0;

  /** Mass at unit density. */
  virtual MassData massData() const = 0;

  /** Smallest box along the axes of the frame's parent. */
  virtual void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const = 0;

  /** False for shapes without a volume to stand for a dynamic body (planes and height fields). */
  virtual bool canMove() const { return true; }

  void addHolder(ShapeHolder& holder) { m_holders.push_back(&holder); }
  void removeHolder(ShapeHolder& holder);
  void takeHolders(ShapeImpl& other) {
    m_holders = std::move(other.m_holders);
    m_revision = other.m_revision;
  }
  void notifyHolders() const;
  /** Another number after each change. */
  unsigned int revision() const { return m_revision; }

private:
  mutable unsigned int m_revision = 0;
  std::vector<ShapeHolder*> m_holders; // one entry for each time the shape is held
};

} // namespace zorBullet
