#include "ChangingLines.h"

#include <osg/LineWidth>

#include "scene/LineBuilder.h"
#include "scene/MeshBuilder.h"
#include "scene/VisualState.h"

namespace zorOSG {

ChangingLines::ChangingLines(float width)
    : m_geometry(new osg::Geometry), m_positions(new osg::Vec3Array), m_colors(new osg::Vec4ubArray),
      m_pieces(new osg::DrawElementsUInt(GL_LINES)) {
  m_colors->setNormalize(true);
  m_geometry->setDataVariance(osg::Object::DYNAMIC);
  m_geometry->setVertexArray(m_positions);
  m_geometry->setColorArray(m_colors, osg::Array::BIND_PER_VERTEX);
  m_geometry->addPrimitiveSet(m_pieces);
  useVertexBuffers(*m_geometry);
  drawWithVertexColors(*m_geometry);
  m_geometry->getStateSet()->setAttributeAndModes(new osg::LineWidth(width));
  drawEvenIfSmall(*m_geometry);
}

void ChangingLines::begin() {
  m_positions->clear();
  m_colors->clear();
  m_pieces->clear();
  m_ended = 0;
}

void ChangingLines::corner(osg::Vec3 const& position, osg::Vec4ub const& color) {
  auto const number = static_cast<unsigned int>(m_positions->size());
  if (number > m_ended) {
    m_pieces->push_back(number - 1);
    m_pieces->push_back(number);
  }
  m_positions->push_back(position);
  m_colors->push_back(color);
}

void ChangingLines::endStrip() {
  m_ended = m_positions->size();
}

void ChangingLines::end() {
  m_positions->dirty();
  m_colors->dirty();
  m_pieces->dirty();
  m_geometry->dirtyBound();
}

} // namespace zorOSG
