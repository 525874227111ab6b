#include "TrailLayer.h"

#include "scene/MeshBuilder.h"

namespace zorOSG {

TrailLayer::TrailLayer()
    : m_positions(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_colors(new osg::Vec4ubArray(osg::Array::BIND_PER_VERTEX)), m_pieces(new osg::DrawArrays(GL_LINES)) {
  setDataVariance(osg::Object::DYNAMIC);
  m_colors->setNormalize(true);
  setVertexArray(m_positions);
  setColorArray(m_colors);
  addPrimitiveSet(m_pieces);
  useVertexBuffers(*this);
}

void TrailLayer::begin() {
  m_positions->clear();
  m_colors->clear();
  m_pieces->setCount(0);
  m_box.init();
}

void TrailLayer::add(osg::Vec3 const& from, osg::Vec3 const& to, osg::Vec4ub const& color) {
  m_positions->push_back(from);
  m_positions->push_back(to);
  m_colors->push_back(color);
  m_colors->push_back(color);
  m_box.expandBy(from);
  m_box.expandBy(to);
}

void TrailLayer::end() {
  m_pieces->setCount(static_cast<int>(m_positions->size()));
  m_positions->dirty();
  m_colors->dirty();
}

} // namespace zorOSG
