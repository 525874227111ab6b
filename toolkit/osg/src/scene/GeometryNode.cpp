#include <zorOSG/GeometryNode.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <osg/CullFace>
#include <osg/FrontFace>
#include <osg/Geode>
#include <osg/NodeVisitor>
#include <osgUtil/CullVisitor>

#include "Convert.h"
#include "Mirrors.h"
#include "MovedNodes.h"
#include "ShapeMeshCache.h"
#include "ShapeVisual.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

using ShapeChangeCallback = zorCollide::Geometry::ShapeChangeEvent::CallbackType;

void requireKnown(GeometryNode::RenderFlag flag) {
  if (flag != GeometryNode::RENDER_DATA && flag != GeometryNode::GEOMETRY_DATA)
    throw std::invalid_argument("GeometryNode: no such render child: " + std::to_string(flag));
}

/** The copy's child at the place that a child has in the original. */
osg::Node* counterpart(osg::Group const& original, osg::Node const* child, osg::Group& copy) {
  unsigned int const index = child ? original.getChildIndex(child) : original.getNumChildren();
  return index < original.getNumChildren() && index < copy.getNumChildren() ? copy.getChild(index) : nullptr;
}

/** A node that nobody else has, for a mesh that others draw as well. */
osg::ref_ptr<osg::Node> ownHolder(osg::Geometry& mesh) {
  osg::ref_ptr<osg::Geode> holder = new osg::Geode;
  holder->addDrawable(&mesh);
  return holder;
}

/** True if a matrix leaves lengths as they are. */
bool isRigid(osg::Matrixd const& m) {
  for (int row = 0; row < 3; ++row)
    if (std::abs(m(row, 0) * m(row, 0) + m(row, 1) * m(row, 1) + m(row, 2) * m(row, 2) - 1.0) > 1e-6)
      return false;
  return true;
}

/** State of surfaces that are seen from outside alone: a third of the work of many small bodies is their
 * backs. */
osg::StateSet& closedSurface() {
  static osg::ref_ptr<osg::StateSet> const state = [] {
    osg::ref_ptr<osg::StateSet> const made = new osg::StateSet;
    made->setAttributeAndModes(new osg::CullFace(osg::CullFace::BACK));
    made->setAttribute(new osg::FrontFace(osg::FrontFace::COUNTER_CLOCKWISE)); // a host may leave another
    return made;
  }();
  return *state;
}

/** Gives access to a function that the cull visitor has for those who derive from it. */
struct CullAccess : osgUtil::CullVisitor {
  static constexpr auto createMatrix = &CullAccess::createOrReuseMatrix;
};

/** Depths (m) from the eye that a box reaches to, where a matrix places it. */
std::pair<double, double> depthRange(osg::BoundingBox const& box, osg::Matrixd const& m) {
  osg::Vec3d const center = box.center(), half = osg::Vec3d(box._max - box._min) * 0.5;
  double const depth = -(center.x() * m(0, 2) + center.y() * m(1, 2) + center.z() * m(2, 2) + m(3, 2));
  double const reach =
      half.x() * std::abs(m(0, 2)) + half.y() * std::abs(m(1, 2)) + half.z() * std::abs(m(2, 2));
  return {depth - reach, depth + reach};
}

/** Lets a visitor's near and far plane hold what lies between two depths. False if that is behind the eye. */
bool extendDepth(osgUtil::CullVisitor& visitor, std::pair<double, double> const& depth) {
  if (depth.second < 0.0)
    return false;
  visitor.setCalculatedNearPlane(std::min<double>(visitor.getCalculatedNearPlane(), depth.first));
  visitor.setCalculatedFarPlane(std::max<double>(visitor.getCalculatedFarPlane(), depth.second));
  return true;
}

} // namespace

char const GeometryNode::Follower::KIND = 0;

void GeometryNode::Follower::geometryMoved() {
  MovedNodes::instance().add(node());
}

void GeometryNode::Follower::geometryShapesChanged() {
  osg::ref_ptr<GeometryNode> const alive(&node()); // a new visual may be the end of the old node
  if (alive->m_detailRatio > 0.0f && alive->shapeCallback == ownShapeCallback())
    alive->buildVisual(alive->m_detailRatio);
}

void GeometryNode::Follower::geometryLeft(zorCollide::Space* space, zorCollide::Geometry* geometry) {
  osg::ref_ptr<GeometryNode> const alive(&node()); // the parents may hold the only references
  if (!alive->m_autoRemove)
    return;
  if (space)
    alive->removeNode(space, geometry);
  else
    alive->removeFromParents();
}

GeometryNode::GeometryNode() : GeometryNode(nullptr) {}

GeometryNode::GeometryNode(zorCollide::Geometry* geometry) : shapeCallback(ownShapeCallback()) {
  setGeometry(geometry);
}

GeometryNode::GeometryNode(GeometryNode const& node, osg::CopyOp const& copyop)
    : osg::MatrixTransform(node, copyop), shapeCallback(ownShapeCallback()),
      m_renderDataChild(counterpart(node, node.m_renderDataChild, *this)),
      m_geometryDataChild(counterpart(node, node.m_geometryDataChild, *this)),
      m_detailRatio(node.m_detailRatio), m_autoRemove(node.m_autoRemove), m_visible(node.m_visible),
      m_renderDataSelected(node.m_renderDataSelected), m_defaultLook(node.m_defaultLook) {
  setGeometry(node.m_follower.getObserved());
}

GeometryNode::~GeometryNode() {
  MovedNodes::instance().remove(*this);
  stopListening();
}

// Stands for what the node does by itself, as an observer: the event would hold a listener for each geometry.
ShapeChangeCallback const& GeometryNode::ownShapeCallback() {
  static ShapeChangeCallback const& callback = *new ShapeChangeCallback([](zorCollide::Geometry*) {});
  return callback;
}

void GeometryNode::setGeometry(zorCollide::Geometry* geometry) {
  stopListening();
  if (!geometry)
    return;
  m_follower.observe(geometry);
  if (!(shapeCallback == ownShapeCallback()))
    geometry->getShapeChangeEvent().add(shapeCallback);
  updateTransform();
}

void GeometryNode::stopListening() {
  zorCollide::Geometry* const geometry = m_follower.getObserved();
  if (!geometry)
    return;
  m_follower.observe(nullptr);
  if (shapeCallback == ownShapeCallback())
    return;
  for (GeometryNode* node = firstFollowing(*geometry); node; node = nextFollowing(*node))
    if (node->shapeCallback == shapeCallback)
      return;
  geometry->getShapeChangeEvent().remove(shapeCallback);
}

zorCollide::Geometry* GeometryNode::getGeometry() {
  return m_follower.getObserved();
}
zorCollide::Geometry const* GeometryNode::getGeometry() const {
  return m_follower.getObserved();
}

osg::Object* GeometryNode::cloneType() const {
  return new GeometryNode;
}
osg::Object* GeometryNode::clone(osg::CopyOp const& copyop) const {
  return new GeometryNode(*this, copyop);
}

bool GeometryNode::isSameKindAs(osg::Object const* obj) const {
  return dynamic_cast<GeometryNode const*>(obj) != nullptr;
}

void GeometryNode::accept(osg::NodeVisitor& visitor) {
  auto const type = visitor.getVisitorType();
  if (type == osg::NodeVisitor::UPDATE_VISITOR) {
    if (m_movedPlace != NOT_MOVED)
      MovedNodes::instance().follow(rootOf(visitor, *this));
  } else if (type == osg::NodeVisitor::CULL_VISITOR) {
    if (osgUtil::CullVisitor* const cull = visitor.asCullVisitor())
      return acceptCull(*cull);
  }
  osg::MatrixTransform::accept(visitor);
}

void GeometryNode::acceptCull(osgUtil::CullVisitor& visitor) {
  if (typeid(visitor) == typeid(osgUtil::CullVisitor) && cullMesh(visitor))
    return;
  osg::StateSet* const look = getDefaultLook();
  if (look)
    visitor.pushStateSet(look);
  osg::MatrixTransform::accept(visitor);
  if (look)
    visitor.popStateSet();
}

/**
 * Does for a single mesh what the visitor would do step by step, but without a frustum of its own
 * coordinates: that takes longer than all the rest. False if there is something that the usual way is needed
 * for.
 */
bool GeometryNode::cullMesh(osgUtil::CullVisitor& visitor) {
  auto const nearFar = visitor.getComputeNearFarMode();
  if (getCullCallback() || _referenceFrame != RELATIVE_RF ||
      nearFar > osg::CullSettings::COMPUTE_NEAR_FAR_USING_BOUNDING_VOLUMES ||
      !visitor.getCurrentCullingSet().getStateFrustumList().empty())
    return false;
  osg::Geometry* const mesh = getOnlyMesh();
  if (!mesh || mesh->getCullCallback() || !mesh->isCullingActive())
    return false;
  if (!visitor.validNodeMask(*this) || !visitor.validNodeMask(*mesh) || visitor.isCulled(*this))
    return true;

  osg::RefMatrix* const place = (visitor.*CullAccess::createMatrix)(_matrix);
  place->postMult(*visitor.getModelViewMatrix());
  osg::BoundingBox const& box = mesh->getBoundingBox();
  if (!box.valid())
    return true;
  std::pair<double, double> const depth = depthRange(box, *place);
  if (nearFar != osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR && !extendDepth(visitor, depth))
    return true;
  bool const seeThrough = getStateSet() && isTransparent(*getStateSet());
  bool const oneSided = ShapeMeshCache::isClosed(*mesh) && !seeThrough && !mirrors(*place);
  // What is said of the node comes after, and wins.
  osg::StateSet* const states[] = {oneSided ? &closedSurface() : nullptr, getDefaultLook(), getStateSet(),
                                   mesh->getStateSet()};
  for (osg::StateSet* const state : states)
    if (state)
      visitor.pushStateSet(state);
  visitor.addDrawableAndDepth(mesh, place, static_cast<float>(0.5 * (depth.first + depth.second)));
  for (osg::StateSet* const state : states)
    if (state)
      visitor.popStateSet();
  return true;
}

osg::Geometry* GeometryNode::getOnlyMesh() const {
  osg::Node* only = nullptr;
  for (osg::ref_ptr<osg::Node> const& child : _children) {
    if (!isDrawn(child))
      continue;
    if (only)
      return nullptr;
    only = child;
  }
  return only ? only->asGeometry() : nullptr;
}

void GeometryNode::traverse(osg::NodeVisitor& visitor) {
  if (visitor.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR &&
      getNumChildrenRequiringUpdateTraversal() == 0)
    return;
  if (visitor.getTraversalMode() != osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN) {
    osg::MatrixTransform::traverse(visitor);
    return;
  }
  for (osg::ref_ptr<osg::Node> const& child : _children)
    if (isDrawn(child))
      child->accept(visitor);
}

bool GeometryNode::isDrawn(osg::Node const* child) const {
  if (!m_visible)
    return false;
  if (child == m_renderDataChild)
    return m_renderDataSelected;
  return child != m_geometryDataChild || !m_renderDataSelected;
}

void GeometryNode::removeNode(zorCollide::Space* /*space*/, zorCollide::Geometry* geometry) {
  if (geometry && geometry == m_follower.getObserved())
    removeFromParents();
}

void GeometryNode::removeFromParents() {
  osg::ref_ptr<GeometryNode> const alive(this);
  while (getNumParents() > 0)
    getParent(getNumParents() - 1)->removeChild(this);
}

osg::StateSet* GeometryNode::getDefaultLook() const {
  if (m_defaultLook == DefaultLook::NONE)
    return nullptr;
  return m_defaultLook == DefaultLook::GROUND ? &groundLook() : &defaultLook();
}

void GeometryNode::selectRenderChild(RenderFlag flag) {
  requireKnown(flag);
  m_renderDataSelected = flag == RENDER_DATA;
}

osg::ref_ptr<osg::Node>& GeometryNode::renderChild(RenderFlag flag) {
  requireKnown(flag);
  return flag == RENDER_DATA ? m_renderDataChild : m_geometryDataChild;
}

void GeometryNode::setRenderChild(RenderFlag flag, osg::Node* node) {
  osg::ref_ptr<osg::Node>& child = renderChild(flag);
  if (child == node)
    return;
  if (child)
    removeChild(child);
  child = node;
  if (node)
    addChild(node);
}

osg::Node* GeometryNode::getRenderChild(RenderFlag flag) {
  osg::ref_ptr<osg::Node>& child = renderChild(flag);
  osg::Geometry* const mesh = child ? child->asGeometry() : nullptr;
  if (mesh && ShapeMeshCache::isShared(*mesh)) {
    osg::ref_ptr<osg::Node> const own = ownHolder(*mesh);
    replaceChild(mesh, own);
  }
  return child.get();
}

osg::Node const* GeometryNode::getRenderChild(RenderFlag flag) const {
  requireKnown(flag);
  return flag == RENDER_DATA ? m_renderDataChild.get() : m_geometryDataChild.get();
}

// Replacing a render child keeps its part: functions that edit meshes do so.
bool GeometryNode::setChild(unsigned int index, osg::Node* node) {
  osg::Node const* const old = index < getNumChildren() ? getChild(index) : nullptr;
  if (!osg::MatrixTransform::setChild(index, node))
    return false;
  for (osg::ref_ptr<osg::Node>* const child : {&m_renderDataChild, &m_geometryDataChild})
    if (old && *child == old)
      *child = node;
  return true;
}

void GeometryNode::updateTransform() {
  zorCollide::Geometry const* const geometry = m_follower.getObserved();
  if (!geometry)
    return;
  m_visible = geometry->getEnable();
  zor::AffineMatrix4x4 const transform = geometry->getTransform();
  // A new matrix makes all bounds above invalid: leave those of bodies that did not move alone.
  if (!std::equal(transform.ptr(), transform.ptr() + 16, _matrix.ptr()))
    moveTo(transform);
}

// The bound moves along, so that it has not to be computed from the children again.
void GeometryNode::moveTo(zor::AffineMatrix4x4 const& transform) {
  _matrix.set(transform.ptr());
  _inverseDirty = true;
  if (!_boundingSphereComputed)
    return;
  if (!m_boundCenterKnown || _computeBoundCallback || _initialBound.valid() || !isRigid(_matrix)) {
    dirtyBound();
    return;
  }
  _boundingSphere.center() = m_boundCenter * _matrix;
  for (osg::Group* const parent : _parents)
    parent->dirtyBound();
}

osg::BoundingSphere GeometryNode::computeBound() const {
  osg::BoundingSphere bound = osg::Group::computeBound();
  m_boundCenterKnown = bound.valid() && _referenceFrame == RELATIVE_RF && isRigid(_matrix);
  if (!m_boundCenterKnown)
    return osg::MatrixTransform::computeBound();
  m_boundCenter = bound.center();
  bound.center() = m_boundCenter * _matrix;
  return bound;
}

void GeometryNode::buildVisual(float detailRatio, RigidBodyRenderCache::Templates* templates) {
  m_detailRatio = detailRatio;
  zorCollide::Geometry const* const geometry = m_follower.getObserved();
  if (!geometry)
    return;
  osg::ref_ptr<osg::Node> const form = makeShapeVisual(*geometry, {detailRatio, templates});
  osg::ref_ptr<osg::Node> renderData = makeRenderDataVisual(*geometry, {detailRatio, templates});
  if (renderData == form) // render data without anything to say: told apart all the same
    renderData = ownHolder(*form->asGeometry());
  setRenderChild(RENDER_DATA, renderData);
  setRenderChild(GEOMETRY_DATA, form);
  if (!renderData)
    m_renderDataSelected = false;
}

} // namespace zorOSG
