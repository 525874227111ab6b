#include "bullet/CompoundImpl.h"

#include <algorithm>

namespace zorBullet {

CompoundImpl::~CompoundImpl() {
  for (Child& child : m_children)
    child.shape->getImpl().removeHolder(*this);
}

void CompoundImpl::add(zorCollide::Shape& shape, btTransform const& local) {
  m_children.push_back(Child{&shape, local});
  shape.getImpl().addHolder(*this);
  try {
    notifyHolders();
  } catch (...) { // a body cannot have the shape
    shape.getImpl().removeHolder(*this);
    m_children.pop_back();
    notifyHolders();
    throw;
  }
}

bool CompoundImpl::remove(zorCollide::Shape& shape) {
  auto const it = std::find_if(m_children.begin(), m_children.end(),
                               [&shape](Child const& child) { return child.shape.get() == &shape; });
  if (it == m_children.end())
    return false;
  zor::ref_ptr<zorCollide::Shape> const kept = it->shape;
  kept->getImpl().removeHolder(*this);
  m_children.erase(it);
  notifyHolders();
  return true;
}

bool CompoundImpl::contains(ShapeImpl const& impl) const {
  if (&impl == this)
    return true;
  return std::any_of(m_children.begin(), m_children.end(), [&impl](Child const& child) {
    ShapeImpl const& own = child.shape->getImpl();
    auto const* compound = dynamic_cast<CompoundImpl const*>(&own);
    return &own == &impl || (compound && compound->contains(impl));
  });
}

void CompoundImpl::build(btTransform const& local, bool moving, LeafSet& leaves) const {
  for (Child const& child : m_children)
    child.shape->getImpl().build(local * child.local, moving, leaves);
}

bool CompoundImpl::castRay(Ray const& ray, Hit& hit) const {
  bool found = false;
  for (Child const& child : m_children)
    found = castRayOn(*child.shape, child.local, ray, hit) || found;
  return found;
}

void CompoundImpl::closest(btVector3 const& center, double reach, bool moving, SurfacePoints& found) const {
  for (Child const& child : m_children) {
    size_t const before = found.size();
    child.shape->getImpl().closest(child.local.invXform(center), reach, moving, found);
    found.transform(child.local, before);
  }
}

MassData CompoundImpl::massData() const {
  MassData sum;
  for (Child const& child : m_children)
    sum.add(child.shape->getImpl().massData().transformed(child.local));
  return sum;
}

void CompoundImpl::bounds(btTransform const& frame, btVector3& lower, btVector3& upper) const {
  upper = lower = frame.getOrigin();
  bool first = true;
  for (Child const& child : m_children) {
    btVector3 childLower, childUpper;
    child.shape->getImpl().bounds(frame * child.local, childLower, childUpper);
    lower = first ? childLower : btVector3(lower);
    upper = first ? childUpper : btVector3(upper);
    lower.setMin(childLower);
    upper.setMax(childUpper);
    first = false;
  }
}

bool CompoundImpl::canMove() const {
  return std::all_of(m_children.begin(), m_children.end(),
                     [](Child const& child) { return child.shape->getImpl().canMove(); });
}

bool castRayOn(zorCollide::Shape const& shape, btTransform const& local, Ray const& ray, Hit& hit) {
  Ray const inside{local.invXform(ray.origin), ray.direction * local.getBasis()};
  Hit nearest = hit;
  nearest.shape = nullptr;
  if (!shape.getImpl().castRay(inside, nearest))
    return false;
  nearest.normal = local.getBasis() * nearest.normal;
  if (!nearest.shape)
    nearest.shape = &shape;
  hit = nearest;
  return true;
}

} // namespace zorBullet
