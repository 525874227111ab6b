#include <zorCollide/Shape.h>

#include "bullet/Conversions.h"
#include "bullet/ShapeImpl.h"

namespace zorCollide {

Shape::Shape(Type type, std::unique_ptr<zorBullet::ShapeImpl> impl) : m_type(type), m_impl(std::move(impl)) {}

Shape::~Shape() = default;

char const* Shape::getTypeName() const {
  static char const* const names[] = {"Box",   "Sphere", "Capsule", "Cylinder",    "Cone",
                                      "Plane", "Convex", "Trimesh", "HeightField", "Compound"};
  return names[m_type];
}

zor::Real Shape::getVolume() const {
  return m_impl->massData().mass;
}

void Shape::getBounds(zor::AffineMatrix4x4 const& transform, zor::Vec3& lower, zor::Vec3& upper) const {
  btVector3 low, high;
  m_impl->bounds(zorBullet::toBt(transform), low, high);
  lower = zorBullet::fromBt(low);
  upper = zorBullet::fromBt(high);
}

unsigned int Shape::getRevision() const {
  return m_impl->revision();
}

void Shape::setRenderData(zorRender::RenderData* renderData) {
  if (renderData)
    renderData->validate();
  m_renderData = renderData;
  m_impl->notifyHolders();
}

void Shape::replaceImpl(std::unique_ptr<zorBullet::ShapeImpl> impl) {
  // A listener may let go of the shape; one that nobody holds has no listeners, and a reference would end it.
  zor::ref_ptr<Shape> const kept(getReferenceCount() > 0 ? this : nullptr);
  impl->takeHolders(*m_impl);
  m_impl = std::move(impl);
  m_impl->notifyHolders();
}

} // namespace zorCollide
