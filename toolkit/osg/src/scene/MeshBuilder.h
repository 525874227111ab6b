#pragma once

#include <cstddef>

#include <osg/Array>
#include <osg/Geometry>
#include <osg/PrimitiveSet>
#include <osg/ref_ptr>

namespace zorOSG {

/** Collects vertices with normal and texture coordinate, and triangles over them, into one drawable. */
class MeshBuilder {
public:
  MeshBuilder();

  void reserve(std::size_t vertices, std::size_t triangles);

  unsigned int vertex(osg::Vec3 const& position, osg::Vec3 const& normal, osg::Vec2 const& textureCoordinate);

  /** Corners counter-clockwise seen from outside. */
  void triangle(unsigned int a, unsigned int b, unsigned int c);
  void quad(unsigned int a, unsigned int b, unsigned int c, unsigned int d);

  std::size_t vertexCount() const { return m_positions->size(); }

  /** The finished drawable, set up for vertex buffers. The builder must not be used afterwards. */
  osg::ref_ptr<osg::Geometry> finish();

private:
  osg::ref_ptr<osg::Vec3Array> m_positions;
  osg::ref_ptr<osg::Vec3Array> m_normals;
  osg::ref_ptr<osg::Vec2Array> m_textureCoordinates;
  osg::ref_ptr<osg::DrawElementsUInt> m_indices;
};

/** Vertex buffers are uploaded once and shared; display lists would be compiled per context and thread. */
void useVertexBuffers(osg::Geometry& drawable);

} // namespace zorOSG
