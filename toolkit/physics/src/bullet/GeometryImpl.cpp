#include "bullet/GeometryImpl.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include <BulletCollision/CollisionShapes/btCompoundShape.h>

#include <zorCollide/Shape.h>

#include "bullet/CompoundImpl.h"
#include "bullet/Conversions.h"
#include "bullet/SpaceImpl.h"
#include "bullet/Surfaces.h"

namespace zorBullet {

zor::Material* GeometryImpl::defaultMaterial() {
  static zor::ref_ptr<zor::Material> const material(new zor::Material("default"));
  return material.get();
}

GeometryImpl::GeometryImpl(zorCollide::Geometry& geometry)
    : material(defaultMaterial()), m_geometry(geometry), m_frame(new GeometryFrame(*this)),
      m_objectOffset(btTransform::getIdentity()) {
  frame = m_frame.get();
  m_worldObject.geometries.push_back(this);
}

GeometryImpl::~GeometryImpl() {
  raiseRemovalAtEnd();
  m_geometry.m_observers.tellDestroyed(m_geometry);
  m_frame->setListener(nullptr);
  leaveSpace();
  for (zor::ref_ptr<zorCollide::Shape> const& shape : m_geometry.m_shapes)
    shape->getImpl().removeHolder(*this);
  for (GeometryImpl* other : disabled)
    other->disabled.erase(this);
}

void GeometryImpl::raiseRemovalAtEnd() noexcept {
  try {
    removal.raise(nullptr, &m_geometry);
  } catch (...) { // there is nobody left to tell
  }
}

void GeometryImpl::raiseRemoval(zorCollide::Space& from) {
  m_geometry.m_observers.tellLeft(from, m_geometry);
  removal.raise(&from, &m_geometry);
}

void GeometryImpl::attach(GeometryOwner& owner, zor::Frame* bodyFrame, zor::AffineMatrix4x4 const& local) {
  dropObject();
  placeFrame(bodyFrame, local);
  m_owner = &owner;
  makeObject();
}

void GeometryImpl::detach() {
  dropObject();
  zor::AffineMatrix4x4 const world = m_frame->getMatrix();
  placeFrame(nullptr, world);
  m_owner = nullptr;
  makeObject();
}

void GeometryImpl::placeFrame(zor::Frame* parent, zor::AffineMatrix4x4 const& local) {
  m_frame->setListener(nullptr);
  try {
    m_frame->setParent(parent);
    m_frame->setLocalMatrix(local);
  } catch (...) {
    m_frame->setListener(this);
    throw;
  }
  m_frame->setListener(this);
  tellMoved();
}

bool GeometryImpl::canMove() const {
  return std::all_of(m_geometry.m_shapes.begin(), m_geometry.m_shapes.end(),
                     [](auto const& shape) { return shape->getImpl().canMove(); });
}

void GeometryImpl::checkMovable() const {
  for (zor::ref_ptr<zorCollide::Shape> const& shape : m_geometry.m_shapes)
    if (!shape->getImpl().canMove())
      throw std::invalid_argument("Geometry '" + m_geometry.getName() + "': a shape of type " +
                                  shape->getTypeName() + " cannot be part of a dynamic body");
}

std::shared_ptr<LeafSet const> GeometryImpl::leaves(bool moving) {
  std::shared_ptr<LeafSet const>& kept = m_leaves[moving ? 1 : 0];
  if (!kept) {
    if (moving)
      checkMovable();
    auto set = std::make_shared<LeafSet>();
    for (size_t i = 0; i < locals.size(); ++i)
      m_geometry.m_shapes[i]->getImpl().build(locals[i], moving, *set);
    for (Leaf& leaf : *set)
      leaf.shape->setUserPointer(this);
    kept = std::move(set);
  }
  return kept;
}

btTransform GeometryImpl::localTransform() const {
  return toBt(m_frame->getLocalMatrix());
}

btTransform GeometryImpl::worldTransform() const {
  return toBt(m_frame->getMatrix());
}

MassData GeometryImpl::massData() const {
  MassData sum;
  if (!isSolid())
    return sum;
  for (size_t i = 0; i < locals.size(); ++i)
    sum.add(m_geometry.m_shapes[i]->getImpl().massData().transformed(locals[i]));
  return sum.scaled(material->getDensity());
}

bool GeometryImpl::castRay(Ray const& ray, Hit& hit) const {
  btTransform const world = worldTransform();
  bool found = false;
  for (size_t i = 0; i < locals.size(); ++i)
    found = castRayOn(*m_geometry.m_shapes[i], world * locals[i], ray, hit) || found;
  return found;
}

void GeometryImpl::castRayOnEach(Ray const& ray, double maxDistance, zorCollide::RayHitVector& hits) const {
  btTransform const world = worldTransform();
  for (size_t i = 0; i < locals.size(); ++i) {
    Hit hit;
    hit.distance = maxDistance;
    if (castRayOn(*m_geometry.m_shapes[i], world * locals[i], ray, hit))
      hits.push_back(makeRayHit(m_geometry, ray, hit));
  }
}

void GeometryImpl::bounds(btTransform const& at, btVector3& lower, btVector3& upper) const {
  lower = upper = at.getOrigin();
  for (size_t i = 0; i < locals.size(); ++i) {
    btVector3 shapeLower, shapeUpper;
    m_geometry.m_shapes[i]->getImpl().bounds(at * locals[i], shapeLower, shapeUpper);
    if (i == 0) {
      lower = shapeLower;
      upper = shapeUpper;
    }
    lower.setMin(shapeLower);
    upper.setMax(shapeUpper);
  }
}

void GeometryImpl::enterSpace(SpaceImpl& space) {
  m_space = &space;
  makeObject();
}

void GeometryImpl::leaveSpace() {
  dropObject();
  if (m_space)
    m_space->forgetGeometry(*this);
  m_space = nullptr;
}

btCollisionShape* GeometryImpl::makeObjectShape() {
  m_objectLeaves =
      leaves(sensor && canMove()); // a sensor shall feel what is inside, for which surfaces do not serve
  if (m_objectLeaves->size() == 1) {
    m_objectOffset = m_objectLeaves->front().local;
    return m_objectLeaves->front().shape.get();
  }
  auto compound = std::make_unique<btCompoundShape>(true, static_cast<int>(m_objectLeaves->size()));
  for (Leaf const& leaf : *m_objectLeaves)
    compound->addChildShape(leaf.local, leaf.shape.get());
  m_objectOffset = btTransform::getIdentity();
  m_compound = std::move(compound);
  return m_compound.get();
}

void GeometryImpl::makeObject() {
  bool const needed = m_space && enabled && !locals.empty() && (sensor || !m_owner);
  if (!needed || m_object)
    return;
  btCollisionShape* const shape = makeObjectShape();
  m_object = std::make_unique<btCollisionObject>();
  m_object->setCollisionShape(shape);
  m_object->setCollisionFlags(sensor ? btCollisionObject::CF_KINEMATIC_OBJECT |
                                           btCollisionObject::CF_NO_CONTACT_RESPONSE
                                     : btCollisionObject::CF_STATIC_OBJECT);
  if (sensor)
    m_object->setActivationState(DISABLE_DEACTIVATION);
  m_worldObject.body = m_owner ? m_owner->getBody() : nullptr;
  m_worldObject.sensor = sensor;
  m_worldObject.attachTo(*m_object);
  m_object->setWorldTransform(worldTransform() * m_objectOffset);
  m_object->setInterpolationWorldTransform(m_object->getWorldTransform());
  m_object->setInterpolationLinearVelocity(btVector3(0, 0, 0)); // the engine leaves them as memory was
  m_object->setInterpolationAngularVelocity(btVector3(0, 0, 0));
  m_space->addObject(*m_object, *this);
}

void GeometryImpl::dropObject() {
  if (!m_object)
    return;
  m_space->removeObject(*m_object, *this);
  m_object.reset();
  m_compound.reset();
  m_objectLeaves.reset();
}

void GeometryImpl::rebuild() {
  dropObject();
  makeObject();
  if (m_owner)
    m_owner->onGeometryChanged(*this);
}

void GeometryImpl::moveObject() {
  if (!m_object)
    return;
  btTransform const world = worldTransform() * m_objectOffset;
  if (world == m_object->getWorldTransform())
    return;
  m_object->setWorldTransform(world);
  m_object->setInterpolationWorldTransform(world);
  m_space->objectMoved(*m_object);
}

void GeometryImpl::poseChanged() {
  if (m_owner)
    m_owner->onGeometryChanged(*this);
  moveObject();
}

void GeometryImpl::addShape(zorCollide::Shape& shape, btTransform const& local) {
  zor::ref_ptr<zorCollide::Shape> const kept(&shape);
  m_geometry.m_shapes.push_back(kept);
  locals.push_back(local);
  shape.getImpl().addHolder(*this);
  try {
    shapesChanged();
  } catch (...) { // the body cannot have the shape
    removeLast();
    throw;
  }
}

void GeometryImpl::removeLast() {
  m_geometry.m_shapes[m_geometry.m_shapes.size() - 1]->getImpl().removeHolder(*this);
  m_geometry.m_shapes.pop_back();
  locals.pop_back();
  shapesChanged();
}

bool GeometryImpl::removeShape(zorCollide::Shape& shape) {
  auto& shapes = m_geometry.m_shapes;
  auto const it =
      std::find_if(shapes.begin(), shapes.end(), [&shape](auto const& own) { return own.get() == &shape; });
  if (it == shapes.end())
    return false;
  zor::ref_ptr<zorCollide::Shape> const kept = *it;
  locals.erase(locals.begin() + (it - shapes.begin()));
  shapes.erase(it);
  kept->getImpl().removeHolder(*this);
  shapesChanged();
  return true;
}

void GeometryImpl::setMaterial(zor::Material* newMaterial) {
  material = newMaterial ? newMaterial : defaultMaterial();
  surfacesChanged();
  if (m_owner)
    m_owner->onGeometryChanged(*this);
}

void GeometryImpl::setEnablePair(GeometryImpl& other, bool enable) {
  if (enable) {
    disabled.erase(&other);
    other.disabled.erase(this);
  } else if (&other != this) {
    disabled.insert(&other);
    other.disabled.insert(this);
  }
  filterChanged();
}

void GeometryImpl::shapesChanged() {
  shapesPlaced = std::any_of(locals.begin(), locals.end(),
                             [](btTransform const& local) { return !(local == btTransform::getIdentity()); });
  for (auto& kept : m_leaves)
    kept.reset(); // whoever uses the old leaves holds them
  rebuild();
  m_geometry.m_observers.tellShapesChanged();
  shapeChange.raise(&m_geometry);
}

void GeometryImpl::filterChanged() {
  if (m_space)
    m_space->filtersChanged();
}

void GeometryImpl::statusChanged() {
  tellMoved();
  rebuild();
  filterChanged();
}

} // namespace zorBullet
