#include <zorOSG/GeometryNode.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include <osg/NodeVisitor>

#include "Convert.h"
#include "GeometryNodeRegistry.h"
#include "ShapeVisual.h"

namespace zorOSG {

namespace {

using ShapeChangeCallback = zorCollide::Geometry::ShapeChangeEvent::CallbackType;
using RemovalCallback = zorCollide::Geometry::RemovalEvent::CallbackType;

void requireKnown(GeometryNode::RenderFlag flag) {
  if (flag != GeometryNode::RENDER_DATA && flag != GeometryNode::GEOMETRY_DATA)
    throw std::invalid_argument("GeometryNode: no such render child: " + std::to_string(flag));
}

/** The copy's child at the place that a child has in the original. */
osg::Node* counterpart(osg::Group const& original, osg::Node const* child, osg::Group& copy) {
  unsigned int const index = child ? original.getChildIndex(child) : original.getNumChildren();
  return index < original.getNumChildren() && index < copy.getNumChildren() ? copy.getChild(index) : nullptr;
}

} // namespace

GeometryNode::GeometryNode() {
  initialize();
}

GeometryNode::GeometryNode(zorCollide::Geometry* geometry) {
  initialize();
  setGeometry(geometry);
}

GeometryNode::GeometryNode(GeometryNode const& node, osg::CopyOp const& copyop)
    : osg::MatrixTransform(node, copyop), m_renderDataChild(counterpart(node, node.m_renderDataChild, *this)),
      m_geometryDataChild(counterpart(node, node.m_geometryDataChild, *this)),
      m_detailRatio(node.m_detailRatio), m_selected(node.m_selected), m_autoRemove(node.m_autoRemove),
      m_visible(node.m_visible) {
  initialize();
  setGeometry(node.m_geometry);
}

GeometryNode::~GeometryNode() {
  stopListening();
}

void GeometryNode::initialize() {
  shapeCallback = ShapeChangeCallback([this](zorCollide::Geometry*) {
    if (m_detailRatio > 0.0f)
      buildVisual(m_detailRatio);
  });
  m_removalCallback = RemovalCallback(
      [this](zorCollide::Space* space, zorCollide::Geometry* geometry) { geometryLeft(space, geometry); });
  // Update traversals pass by subtrees that do not ask for them.
  setNumChildrenRequiringUpdateTraversal(getNumChildrenRequiringUpdateTraversal() + 1);
}

void GeometryNode::setGeometry(zorCollide::Geometry* geometry) {
  stopListening();
  m_geometry = geometry;
  if (!geometry)
    return;
  GeometryNodeRegistry::instance().add(geometry, this);
  geometry->getShapeChangeEvent().add(shapeCallback);
  geometry->getRemovalEvent().add(m_removalCallback);
  updateTransform();
}

void GeometryNode::stopListening() {
  if (!m_geometry)
    return;
  GeometryNodeRegistry::instance().remove(m_geometry, this);
  m_geometry->getShapeChangeEvent().remove(shapeCallback);
  m_geometry->getRemovalEvent().remove(m_removalCallback);
  m_geometry = nullptr;
}

void GeometryNode::geometryLeft(zorCollide::Space* space, zorCollide::Geometry* geometry) {
  osg::ref_ptr<GeometryNode> const alive(this); // the parents may hold the only references
  if (m_autoRemove)
    removeNode(space, geometry);
  if (!space) // destroyed
    stopListening();
}

zorCollide::Geometry* GeometryNode::getGeometry() {
  return m_geometry;
}
zorCollide::Geometry const* GeometryNode::getGeometry() const {
  return m_geometry;
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
  if (visitor.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR)
    updateTransform();
  osg::MatrixTransform::accept(visitor);
}

void GeometryNode::traverse(osg::NodeVisitor& visitor) {
  if (visitor.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR &&
      getNumChildrenRequiringUpdateTraversal() <= 1) // none but this node itself
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
    return m_selected == RENDER_DATA;
  return child != m_geometryDataChild || m_selected == GEOMETRY_DATA;
}

void GeometryNode::removeNode(zorCollide::Space* /*space*/, zorCollide::Geometry* geometry) {
  if (geometry && geometry == m_geometry)
    removeFromParents();
}

void GeometryNode::removeFromParents() {
  osg::ref_ptr<GeometryNode> const alive(this);
  while (getNumParents() > 0)
    getParent(getNumParents() - 1)->removeChild(this);
}

void GeometryNode::selectRenderChild(RenderFlag flag) {
  requireKnown(flag);
  m_selected = flag;
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
  return renderChild(flag).get();
}

osg::Node const* GeometryNode::getRenderChild(RenderFlag flag) const {
  requireKnown(flag);
  return flag == RENDER_DATA ? m_renderDataChild.get() : m_geometryDataChild.get();
}

void GeometryNode::updateTransform() {
  if (!m_geometry)
    return;
  m_visible = m_geometry->getEnable();
  zor::AffineMatrix4x4 const transform = m_geometry->getTransform();
  // A new matrix makes all bounds above invalid: leave those of bodies at rest alone.
  if (!std::equal(transform.ptr(), transform.ptr() + 16, getMatrix().ptr()))
    setMatrix(toOsg(transform));
}

void GeometryNode::buildVisual(float detailRatio) {
  m_detailRatio = detailRatio;
  if (!m_geometry)
    return;
  osg::ref_ptr<osg::Node> const renderData = makeRenderDataVisual(*m_geometry, detailRatio);
  setRenderChild(RENDER_DATA, renderData);
  setRenderChild(GEOMETRY_DATA, makeShapeVisual(*m_geometry, detailRatio));
  if (!renderData)
    m_selected = GEOMETRY_DATA;
}

} // namespace zorOSG
