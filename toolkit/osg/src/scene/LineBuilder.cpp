#include "LineBuilder.h"

#include <osg/LineWidth>

#include "MeshBuilder.h"
#include "VisualState.h"

namespace zorOSG {

LineBuilder::LineBuilder()
    : m_positions(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_colors(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX)) {}

void LineBuilder::segment(osg::Vec3 const& from, osg::Vec3 const& to, osg::Vec4 const& color) {
  m_positions->push_back(from);
  m_positions->push_back(to);
  m_colors->push_back(color);
  m_colors->push_back(color);
}

osg::ref_ptr<osg::Geometry> LineBuilder::finish(float width) {
  osg::ref_ptr<osg::Geometry> drawable = new osg::Geometry;
  drawable->setVertexArray(m_positions);
  drawable->setColorArray(m_colors);
  drawable->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, static_cast<int>(m_positions->size())));
  useVertexBuffers(*drawable);
  drawWithVertexColors(*drawable);
  drawable->getStateSet()->setAttributeAndModes(new osg::LineWidth(width));
  return drawable;
}

} // namespace zorOSG
