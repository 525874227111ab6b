#include "MeshBuilder.h"

namespace zorOSG {

MeshBuilder::MeshBuilder()
    : m_positions(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_normals(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_textureCoordinates(new osg::Vec2Array(osg::Array::BIND_PER_VERTEX)),
      m_indices(new osg::DrawElementsUInt(GL_TRIANGLES)) {}

void MeshBuilder::reserve(std::size_t vertices, std::size_t triangles) {
  m_positions->reserve(vertices);
  m_normals->reserve(vertices);
  m_textureCoordinates->reserve(vertices);
  m_indices->reserve(3 * triangles);
}

unsigned int MeshBuilder::vertex(osg::Vec3 const& position, osg::Vec3 const& normal,
                                 osg::Vec2 const& textureCoordinate) {
  m_positions->push_back(position);
  m_normals->push_back(normal);
  m_textureCoordinates->push_back(textureCoordinate);
  return static_cast<unsigned int>(m_positions->size() - 1);
}

void MeshBuilder::triangle(unsigned int a, unsigned int b, unsigned int c) {
  m_indices->push_back(a);
  m_indices->push_back(b);
  m_indices->push_back(c);
}

void MeshBuilder::quad(unsigned int a, unsigned int b, unsigned int c, unsigned int d) {
  triangle(a, b, c);
  triangle(a, c, d);
}

osg::ref_ptr<osg::Geometry> MeshBuilder::finish() {
  osg::ref_ptr<osg::Geometry> drawable = new osg::Geometry;
  drawable->setVertexArray(m_positions);
  drawable->setNormalArray(m_normals);
  drawable->setTexCoordArray(0, m_textureCoordinates);
  drawable->addPrimitiveSet(m_indices);
  useVertexBuffers(*drawable);
  return drawable;
}

void useVertexBuffers(osg::Geometry& drawable) {
  drawable.setUseDisplayList(false);
  drawable.setUseVertexBufferObjects(true);
}

} // namespace zorOSG
