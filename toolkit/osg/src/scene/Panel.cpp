#include <zorOSG/Panel.h>

#include <stdexcept>
#include <string>

#include <osg/ComputeBoundsVisitor>
#include <osgUtil/CullVisitor>

#include <zorOSG/ExampleApplication.h>

#include "Ancestry.h"
#include "Checks.h"
#include "Convert.h"
#include "MeshBuilder.h"
#include "decorator/ScreenLayer.h"

namespace zorOSG {

namespace {

constexpr int UNDER_HUD = 990;

/** On the screen, it takes no room in the scene. */
struct NoBox : osg::Drawable::ComputeBoundingBoxCallback {
  osg::BoundingBox computeBound(osg::Drawable const&) const override { return {}; }
};

osg::ref_ptr<osg::Geometry> makeBackground() {
  osg::ref_ptr<osg::Geometry> quad = new osg::Geometry;
  quad->setName("panel background");
  quad->setDataVariance(osg::Object::DYNAMIC);
  osg::ref_ptr<osg::Vec3Array> const corners = new osg::Vec3Array(osg::Array::BIND_PER_VERTEX);
  for (osg::Vec3 const& corner :
       {osg::Vec3(0, 0, 0), osg::Vec3(1, 0, 0), osg::Vec3(0, 1, 0), osg::Vec3(1, 1, 0)})
    corners->push_back(corner);
  quad->setVertexArray(corners);
  quad->setColorArray(new osg::Vec4Array(osg::Array::BIND_OVERALL, 1));
  quad->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, 4));
  quad->setComputeBoundingBoxCallback(new NoBox);
  quad->setCullingActive(false);
  useVertexBuffers(*quad);
  return quad;
}

} // namespace

Panel::Panel(zor::Vec2 const& position, zor::Vec2 const& size, zor::Vec4 const& color, void const* object)
    : m_object(object), m_background(makeBackground()) {
  setPosition(position);
  setSize(size);
  setColor(color);
  setNodeMask(ExampleApplication::HUD_MASK);
  setCullingActive(false);
  setScreenState(*getOrCreateStateSet(), UNDER_HUD);
  addDrawable(m_background);
}

osg::BoundingSphere Panel::computeBound() const {
  return {};
}

void Panel::traverse(osg::NodeVisitor& visitor) {
  // What has coordinates of the screen is nowhere in the scene.
  if (visitor.getVisitorType() == osg::NodeVisitor::INTERSECTION_VISITOR ||
      dynamic_cast<osg::ComputeBoundsVisitor*>(&visitor))
    return;
  osgUtil::CullVisitor* const cull = visitor.asCullVisitor();
  if (!cull) {
    osg::Geode::traverse(visitor);
    return;
  }
  ScreenScope const scope(*cull, osg::Matrixd::ortho2D(0.0, 1.0, 0.0, 1.0),
                          osg::Matrixd::scale(m_size.x(), m_size.y(), 1.0) *
                              osg::Matrixd::translate(m_position.x(), m_position.y(), 0.0));
  osg::Geode::traverse(visitor);
}

void Panel::setPosition(zor::Vec2 const& position) {
  requireFinite("Panel", "position", position);
  m_position = position;
}

void Panel::setSize(zor::Vec2 const& size) {
  requireFinite("Panel", "size", size);
  if (size.x() < 0 || size.y() < 0)
    throw std::invalid_argument("Panel: size must not be negative, but is " + std::to_string(size.x()) +
                                " by " + std::to_string(size.y()));
  m_size = size;
}

void Panel::setColor(zor::Vec4 const& color) {
  requireFinite("Panel", "color", color);
  m_color = color;
  update();
}

void Panel::update() {
  auto& color = static_cast<osg::Vec4Array&>(*m_background->getColorArray());
  osg::Vec4 const wanted = toOsgFloat(m_color);
  if (color[0] == wanted)
    return;
  color[0] = wanted;
  color.dirty();
}

void Panel::uninitialize(osg::Group* sceneData) {
  osg::ref_ptr<Panel> const alive(this); // the parents may hold the only references
  for (unsigned int i = getNumParents(); i-- > 0;)
    if (osg::Group* const parent = getParent(i); !sceneData || isAtOrBelow(parent, sceneData))
      parent->removeChild(this);
}

zorOSG::Panel* createPanel(osg::Group* root, zor::Vec2 const& position, zor::Vec2 const& size,
                           zor::Vec4 const& color, void const* object) {
  osg::ref_ptr<Panel> const panel = new Panel(position, size, color, object);
  if (!root)
    return nullptr;
  root->addChild(panel);
  return panel.get();
}

} // namespace zorOSG
