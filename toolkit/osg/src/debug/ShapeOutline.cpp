#include "ShapeOutline.h"

#include "scene/Convert.h"
#include "scene/ShapeMesh.h"
#include "scene/VertexWelder.h"

#include <osg/TriangleIndexFunctor>
#include <zorCollide/Compound.h>

#include <algorithm>
#include <map>

namespace zorOSG {

namespace {

/** Cosine of the angle below which two triangles count as one face. */
constexpr double FLAT = 0.99995;

/** That of visuals by default, so that lines lie on their edges. */
constexpr float DETAIL = 0.35f;

struct Edge {
  osg::Vec3d normal; // of the first triangle at it
  bool sharp = true; // until a second triangle in the same plane is met
};

/** Edges of the triangles of one mesh. */
class EdgeCollector {
public:
  explicit EdgeCollector(osg::Geometry const& mesh) : m_welder(mesh.getVertexArray()->getNumElements()) {
    auto const& corners = static_cast<osg::Vec3Array const&>(*mesh.getVertexArray());
    m_numbers.reserve(corners.size());
    for (osg::Vec3 const& corner : corners)
      m_numbers.push_back(m_welder.number(corner));
    osg::TriangleIndexFunctor<Reader> reader;
    reader.collector = this;
    mesh.accept(reader);
  }

  void write(osg::Matrixd const& place, Outline& outline) const {
    for (auto const& [ends, edge] : m_edges)
      if (edge.sharp)
        outline.emplace_back(osg::Vec3d(m_welder.positions()[ends.first]) * place,
                             osg::Vec3d(m_welder.positions()[ends.second]) * place);
  }

private:
  struct Reader {
    EdgeCollector* collector = nullptr;
    void operator()(unsigned int a, unsigned int b, unsigned int c) const { collector->triangle(a, b, c); }
  };

  void triangle(unsigned int a, unsigned int b, unsigned int c) {
    unsigned int const corners[3] = {m_numbers[a], m_numbers[b], m_numbers[c]};
    auto const& at = m_welder.positions();
    osg::Vec3d normal =
        osg::Vec3d(at[corners[1]] - at[corners[0]]) ^ osg::Vec3d(at[corners[2]] - at[corners[0]]);
    if (normal.normalize() == 0)
      return;
    for (int i = 0; i < 3; ++i) {
      auto const ends = std::minmax(corners[i], corners[(i + 1) % 3]);
      auto const [place, isNew] = m_edges.try_emplace(ends, Edge{normal});
      if (!isNew && place->second.normal * normal > FLAT)
        place->second.sharp = false;
    }
  }

  VertexWelder<osg::Vec3> m_welder;
  std::vector<unsigned int> m_numbers;
  std::map<std::pair<unsigned int, unsigned int>, Edge> m_edges;
};

void addShape(zorCollide::Shape const& shape, osg::Matrixd const& place, Outline& outline) {
  if (shape.getType() != zorCollide::Shape::COMPOUND) {
    EdgeCollector(*shapeMesh(shape, DETAIL)).write(place, outline);
    return;
  }
  auto const& compound = static_cast<zorCollide::Compound const&>(shape);
  for (zor::UInt i = 0; i < compound.getNumShapes(); ++i)
    addShape(*compound.getShape(i), toOsg(compound.getLocalTransform(i)) * place, outline);
}

} // namespace

Outline outlineOf(zorCollide::Geometry const& geometry) {
  Outline outline;
  for (zor::UInt i = 0; i < geometry.getNumShapes(); ++i)
    addShape(*geometry.getShape(i), toOsg(geometry.getShapeTransform(i)), outline);
  return outline;
}

} // namespace zorOSG
