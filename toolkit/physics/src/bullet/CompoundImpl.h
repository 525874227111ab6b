#pragma once

#include <vector>

#include <zor/ref_ptr.h>
#include <zorCollide/Shape.h>

#include "bullet/ShapeImpl.h"

namespace zorBullet {

class CompoundImpl final : public ShapeImpl, public ShapeHolder {
public:
  struct Child {
    zor::ref_ptr<zorCollide::Shape> shape;
    btTransform local;
  };

  ~CompoundImpl() override;

  void add(zorCollide::Shape& shape, btTransform const& local);
  bool remove(zorCollide::Shape& shape);
  std::vector<Child> const& children() const { return m_children; }
  /** True if the shape is this compound's own, a child or a child's child. */
  bool contains(ShapeImpl const& impl) const;

  void onShapeChanged() override { notifyHolders(); }

  void build(btTransform const& local, bool moving, LeafSet& leaves) const override;
  bool castRay(Ray const& ray, Hit& hit) const override;
  void closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const override;
  MassData massData() const override;
  void bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const override;
  bool canMove() const override;

private:
  std::vector<Child> m_children;
};

/** Casts a ray, given in the parent's frame, on a shape with a local transform; sets the hit's shape. */
bool castRayOn(zorCollide::Shape const& shape, btTransform const& local, Ray const& ray, Hit& hit);

} // namespace zorBullet
