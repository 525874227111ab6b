#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "MeshBuilder.h"
#include "ShapeTessellator.h"
#include "VertexWelder.h"

namespace zorOSG {

namespace {

/** Finds the vertices of a triangle mesh that has sharp and smooth edges. */
class CreaseSmoother {
public:
  CreaseSmoother(std::span<osg::Vec3 const> vertices, std::span<unsigned int const> indices,
                 float creaseAngle);

  osg::ref_ptr<osg::Geometry> build();

private:
  struct Face {
    std::array<unsigned int, 3> corners;
    osg::Vec3 normal;
    std::array<float, 3> angles;
    int mainAxis;
  };

  /** A vertex already made at a position; corners with like normal and projection reuse it. */
  struct Made {
    osg::Vec3 normal;
    int mainAxis;
    unsigned int index;
  };

  void addFace(osg::Vec3 const& a, osg::Vec3 const& b, osg::Vec3 const& c);
  void connectFaces();
  osg::Vec3 cornerNormal(Face const& face, unsigned int vertex) const;
  unsigned int corner(Face const& face, unsigned int vertex);
  osg::Vec2 project(osg::Vec3 const& position, int mainAxis) const;

  VertexWelder<osg::Vec3> m_welder;
  std::vector<Face> m_faces;
  std::vector<unsigned int> m_firstFaceOf; // by vertex, into m_facesOf
  std::vector<unsigned int> m_facesOf;
  std::vector<std::vector<Made>> m_made;
  osg::Vec3 m_low;
  float m_textureScale = 1.0f;
  float m_creaseCosine;
  MeshBuilder m_mesh;
};

float angleBetween(osg::Vec3 a, osg::Vec3 b) {
  a.normalize();
  b.normalize();
  return std::acos(std::clamp(a * b, -1.0f, 1.0f));
}

CreaseSmoother::CreaseSmoother(std::span<osg::Vec3 const> vertices, std::span<unsigned int const> indices,
                               float creaseAngle)
    : m_welder(vertices.size()), m_creaseCosine(std::cos(creaseAngle)) {
  osg::BoundingBox box;
  m_faces.reserve(indices.size() / 3);
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
    osg::Vec3 const &a = vertices[indices[i]], &b = vertices[indices[i + 1]], &c = vertices[indices[i + 2]];
    addFace(a, b, c);
    box.expandBy(a);
    box.expandBy(b);
    box.expandBy(c);
  }
  if (box.valid()) {
    m_low = box._min;
    float const size = std::max({box.xMax() - box.xMin(), box.yMax() - box.yMin(), box.zMax() - box.zMin()});
    m_textureScale = size > 0.0f ? 1.0f / size : 1.0f;
  }
  connectFaces();
}

void CreaseSmoother::addFace(osg::Vec3 const& a, osg::Vec3 const& b, osg::Vec3 const& c) {
  osg::Vec3 normal = (b - a) ^ (c - a);
  if (!(normal.normalize() > 0.0f)) // no area: nothing to see, and no normal
    return;
  osg::Vec3 const size(std::abs(normal.x()), std::abs(normal.y()), std::abs(normal.z()));
  int const mainAxis = size.z() >= size.x() && size.z() >= size.y() ? 2 : (size.x() >= size.y() ? 0 : 1);
  m_faces.push_back({{m_welder.number(a), m_welder.number(b), m_welder.number(c)},
                     normal,
                     {angleBetween(b - a, c - a), angleBetween(c - b, a - b), angleBetween(a - c, b - c)},
                     mainAxis});
}

void CreaseSmoother::connectFaces() {
  std::size_t const count = m_welder.positions().size();
  m_firstFaceOf.assign(count + 1, 0);
  for (Face const& face : m_faces)
    for (unsigned int const vertex : face.corners)
      ++m_firstFaceOf[vertex + 1];
  for (std::size_t i = 0; i < count; ++i)
    m_firstFaceOf[i + 1] += m_firstFaceOf[i];
  m_facesOf.resize(3 * m_faces.size());
  std::vector<unsigned int> next(m_firstFaceOf.begin(), m_firstFaceOf.end() - 1);
  for (unsigned int i = 0; i < m_faces.size(); ++i)
    for (unsigned int const vertex : m_faces[i].corners)
      m_facesOf[next[vertex]++] = i;
  m_made.resize(count);
}

/** Neighbours count by their angle at the vertex, so that the way a surface is cut up does not show. */
osg::Vec3 CreaseSmoother::cornerNormal(Face const& face, unsigned int vertex) const {
  osg::Vec3 sum;
  for (unsigned int i = m_firstFaceOf[vertex]; i < m_firstFaceOf[vertex + 1]; ++i) {
    Face const& other = m_faces[m_facesOf[i]];
    if (face.normal * other.normal < m_creaseCosine && &other != &face)
      continue;
    auto const place = std::find(other.corners.begin(), other.corners.end(), vertex) - other.corners.begin();
    sum += other.normal * other.angles[static_cast<std::size_t>(place)];
  }
  return sum.normalize() > 0.0f ? sum : face.normal;
}

unsigned int CreaseSmoother::corner(Face const& face, unsigned int vertex) {
  osg::Vec3 const normal = cornerNormal(face, vertex);
  for (Made const& made : m_made[vertex])
    if (made.mainAxis == face.mainAxis && (made.normal - normal).length2() < 1e-8f)
      return made.index;
  osg::Vec3 const& position = m_welder.positions()[vertex];
  unsigned int const index = m_mesh.vertex(position, normal, project(position, face.mainAxis));
  m_made[vertex].push_back({normal, face.mainAxis, index});
  return index;
}

osg::Vec2 CreaseSmoother::project(osg::Vec3 const& position, int mainAxis) const {
  osg::Vec3 const place = (position - m_low) * m_textureScale;
  switch (mainAxis) {
  case 0:
    return {place.y(), place.z()};
  case 1:
    return {place.x(), place.z()};
  default:
    return {place.x(), place.y()};
  }
}

osg::ref_ptr<osg::Geometry> CreaseSmoother::build() {
  m_mesh.reserve(m_welder.positions().size(), m_faces.size());
  for (Face const& face : m_faces) {
    unsigned int const a = corner(face, face.corners[0]);
    unsigned int const b = corner(face, face.corners[1]);
    unsigned int const c = corner(face, face.corners[2]);
    m_mesh.triangle(a, b, c);
  }
  return m_mesh.finish();
}

} // namespace

osg::ref_ptr<osg::Geometry> tessellateTriangles(std::span<osg::Vec3 const> vertices,
                                                std::span<unsigned int const> indices, float creaseAngle) {
  return CreaseSmoother(vertices, indices, creaseAngle).build();
}

} // namespace zorOSG
