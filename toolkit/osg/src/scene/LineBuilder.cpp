#include "LineBuilder.h"

#include <algorithm>

#include <osg/LineWidth>
#include <osg/Point>
#include <osgUtil/CullVisitor>

#include "MeshBuilder.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

/** Leaves out what is outside of the view, and nothing else. */
class OutOfViewCallback : public osg::DrawableCullCallback {
public:
  bool cull(osg::NodeVisitor* visitor, osg::Drawable* drawable, osg::RenderInfo*) const override {
    osgUtil::CullVisitor* const culling = visitor->asCullVisitor();
    osg::BoundingBox const& box = drawable->getBoundingBox();
    if (!box.valid()) // nothing to draw
      return true;
    if (!culling || (culling->getCullingMode() & osg::CullSettings::VIEW_FRUSTUM_CULLING) == 0)
      return false;
    return !culling->getCurrentCullingSet().getFrustum().contains(box);
  }
};

} // namespace

void drawEvenIfSmall(osg::Drawable& drawable) {
  static osg::ref_ptr<OutOfViewCallback> const callback = new OutOfViewCallback;
  drawable.setCullCallback(callback);
  drawable.setCullingActive(false);
}

LineBuilder::LineBuilder()
    : m_positions(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_colors(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX)) {}

void LineBuilder::segment(osg::Vec3 const& from, osg::Vec3 const& to, osg::Vec4 const& color) {
  m_positions->push_back(from);
  m_positions->push_back(to);
  m_colors->push_back(color);
  m_colors->push_back(color);
}

osg::ref_ptr<osg::Geometry> LineBuilder::finish(float width, Ends ends) {
  osg::ref_ptr<osg::Geometry> drawable = new osg::Geometry;
  auto const count = static_cast<int>(m_positions->size());
  drawable->setVertexArray(m_positions);
  drawable->setColorArray(m_colors);
  drawable->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, count));
  if (ends == Ends::DOTS)
    drawable->addPrimitiveSet(new osg::DrawArrays(GL_POINTS, 0, count));
  useVertexBuffers(*drawable);
  drawWithVertexColors(*drawable);
  osg::StateSet& state = *drawable->getStateSet();
  state.setAttributeAndModes(new osg::LineWidth(width));
  if (ends == Ends::DOTS)
    state.setAttributeAndModes(new osg::Point(width));
  float alpha = 1;
  for (osg::Vec4 const& color : *m_colors)
    alpha = std::min(alpha, color.a());
  setTransparency(state, alpha, false);
  drawEvenIfSmall(*drawable);
  return drawable;
}

} // namespace zorOSG
