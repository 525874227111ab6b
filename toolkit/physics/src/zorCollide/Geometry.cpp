#include <zorCollide/Geometry.h>

#include <algorithm>

#include "bullet/Check.h"
#include "bullet/Conversions.h"
#include "bullet/GeometryImpl.h"
#include "bullet/SpaceImpl.h"

namespace zorCollide {

Geometry::Geometry() : m_impl(std::make_unique<zorBullet::GeometryImpl>(*this)) {}

Geometry::Geometry(Shape* shape, zor::AffineMatrix4x4 const& localTransform) : Geometry() {
  add(shape, localTransform);
}

Geometry::~Geometry() = default;

void Geometry::add(Shape* shape, zor::AffineMatrix4x4 const& localTransform) {
  zorBullet::checkNotNull("Geometry", "shape", shape);
  zorBullet::checkRigid("Geometry", localTransform);
  m_impl->addShape(*shape, zorBullet::toBt(localTransform));
}

bool Geometry::remove(Shape* shape) {
  return shape && m_impl->removeShape(*shape);
}

Shape* Geometry::getShape(zor::UInt index) const {
  zorBullet::checkIndex("Geometry", index, m_shapes.size());
  return m_shapes[index].get();
}

zor::AffineMatrix4x4 Geometry::getShapeTransform(zor::UInt index) const {
  zorBullet::checkIndex("Geometry", index, m_shapes.size());
  return zorBullet::fromBt(m_impl->locals[index]);
}

void Geometry::setShapeTransform(zor::UInt index, zor::AffineMatrix4x4 const& localTransform) {
  zorBullet::checkIndex("Geometry", index, m_shapes.size());
  m_impl->locals[index] = zorBullet::toBt(zorBullet::checkRigid("Geometry", localTransform));
  m_impl->shapesChanged();
}

void Geometry::setMaterial(zor::Material* material) {
  m_impl->setMaterial(material);
}

zor::Material* Geometry::getMaterial() const {
  return m_impl->material.get();
}

void Geometry::setSensor(bool sensor) {
  if (m_impl->sensor == sensor)
    return;
  m_impl->sensor = sensor;
  m_impl->statusChanged();
}

bool Geometry::isSensor() const {
  return m_impl->sensor;
}

void Geometry::setEnableCollisions(bool enable) {
  if (m_impl->collisions == enable)
    return;
  m_impl->collisions = enable;
  m_impl->filterChanged();
}

bool Geometry::getEnableCollisions() const {
  return m_impl->collisions;
}

void Geometry::setEnableCollisions(Geometry* other, bool enable) {
  zorBullet::checkNotNull("Geometry", "other geometry", other);
  m_impl->setEnablePair(*other->m_impl, enable);
}

bool Geometry::getEnableCollisions(Geometry const* other) const {
  return !other || !m_impl->disabled.contains(other->m_impl.get());
}

void Geometry::setEnable(bool enable) {
  if (m_impl->enabled == enable)
    return;
  m_impl->enabled = enable;
  m_impl->statusChanged();
}

bool Geometry::getEnable() const {
  return m_impl->enabled;
}

void Geometry::addGroup(zor::UInt32 group) {
  auto& groups = m_impl->groups;
  auto const it = std::lower_bound(groups.begin(), groups.end(), group);
  if (it != groups.end() && *it == group)
    return;
  groups.insert(it, group);
  m_impl->filterChanged();
}

bool Geometry::removeGroup(zor::UInt32 group) {
  auto& groups = m_impl->groups;
  auto const it = std::lower_bound(groups.begin(), groups.end(), group);
  if (it == groups.end() || *it != group)
    return false;
  groups.erase(it);
  m_impl->filterChanged();
  return true;
}

bool Geometry::hasGroup(zor::UInt32 group) const {
  return std::binary_search(m_impl->groups.begin(), m_impl->groups.end(), group);
}

zor::UInt32Vector const& Geometry::getGroups() const {
  return m_impl->groups;
}

zor::RigidBody* Geometry::getRigidBody() const {
  return m_impl->owner() ? m_impl->owner()->getBody() : nullptr;
}

Space* Geometry::getSpace() const {
  return m_impl->space() ? &m_impl->space()->space() : nullptr;
}

zor::Frame* Geometry::getFrame() const {
  return m_impl->frame.get();
}

zor::AffineMatrix4x4 Geometry::getTransform() const {
  return m_impl->frame->getMatrix();
}

zor::Vec3 Geometry::getPosition() const {
  return m_impl->frame->getTranslate();
}

zor::Quat Geometry::getRotation() const {
  return m_impl->frame->getRotate();
}

zor::AffineMatrix4x4 Geometry::getLocalTransform() const {
  return m_impl->frame->getLocalMatrix();
}

void Geometry::setTransform(zor::AffineMatrix4x4 const& transform) {
  m_impl->frame->setMatrix(zorBullet::checkRigid("Geometry", transform));
}

void Geometry::setPosition(zor::Vec3 const& position) {
  m_impl->frame->setTranslate(zorBullet::checkFinite("Geometry", "position", position));
}

void Geometry::setRotation(zor::Quat const& rotation) {
  zor::AffineMatrix4x4 transform = getTransform();
  transform.setRotate(rotation);
  setTransform(transform);
}

void Geometry::setLocalTransform(zor::AffineMatrix4x4 const& transform) {
  m_impl->frame->setLocalMatrix(zorBullet::checkRigid("Geometry", transform));
}

void Geometry::getBounds(zor::Vec3& lower, zor::Vec3& upper) const {
  btVector3 low, high;
  m_impl->bounds(m_impl->worldTransform(), low, high);
  lower = zorBullet::fromBt(low);
  upper = zorBullet::fromBt(high);
}

Geometry::ShapeChangeEvent& Geometry::getShapeChangeEvent() const {
  return m_impl->shapeChange;
}

Geometry::RemovalEvent& Geometry::getRemovalEvent() const {
  return m_impl->removal;
}

bool Geometry::hasShapeTransforms() const {
  return m_impl->shapesPlaced;
}

} // namespace zorCollide
