#include "ChangingLines.h"

#include <osg/LineWidth>

#include "scene/LineBuilder.h"
#include "scene/MeshBuilder.h"
#include "scene/VisualState.h"

namespace zorOSG {

ChangingLines::ChangingLines(float width)
    : m_geometry(new osg::Geometry), m_positions(new osg::Vec3Array), m_colors(new osg::Vec4ubArray),
      m_strips(new osg::DrawArrayLengths(GL_LINE_STRIP)) {
  m_colors->setNormalize(true);
  m_geometry->setDataVariance(osg::Object::DYNAMIC);
  m_geometry->setVertexArray(m_positions);
  m_geometry->setColorArray(m_colors, osg::Array::BIND_PER_VERTEX);
  m_geometry->addPrimitiveSet(m_strips);
  useVertexBuffers(*m_geometry);
  drawWithVertexColors(*m_geometry);
  m_geometry->getStateSet()->setAttributeAndModes(new osg::LineWidth(width));
  drawEvenIfSmall(*m_geometry);
}

void ChangingLines::begin() {
  m_positions->clear();
  m_colors->clear();
  m_strips->clear();
  m_ended = 0;
}

void ChangingLines::corner(osg::Vec3 const& position, osg::Vec4ub const& color) {
  m_positions->push_back(position);
  m_colors->push_back(color);
}

void ChangingLines::endStrip() {
  m_strips->push_back(static_cast<int>(m_positions->size() - m_ended));
  m_ended = m_positions->size();
}

void ChangingLines::end() {
  m_positions->dirty();
  m_colors->dirty();
  m_strips->dirty();
  m_geometry->dirtyBound();
}

} // namespace zorOSG
