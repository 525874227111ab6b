#include "TriangleCollector.h"

#include <osg/Geometry>
#include <osg/NodeVisitor>
#include <osg/Transform>
#include <osg/TriangleFunctor>
#include <osg/TriangleIndexFunctor>

#include "Mirrors.h"
#include "VertexWelder.h"

namespace zorOSG {

namespace {

/** Merges triangles, given one by one, into a mesh with shared vertices. */
class TriangleMerger {
public:
  TriangleMerger() : m_welder(1024) {}

  /** What comes next is placed by a matrix. */
  void place(osg::Matrixd const& toWorld) {
    m_toWorld = toWorld;
    m_mirrored = mirrors(toWorld);
  }

  void add(osg::Vec3d const& first, osg::Vec3d const& second, osg::Vec3d const& third) {
    osg::Vec3d const a = first * m_toWorld;
    osg::Vec3d const b = (m_mirrored ? third : second) * m_toWorld; // keeps the outside outside
    osg::Vec3d const c = (m_mirrored ? second : third) * m_toWorld;
    if (((b - a) ^ (c - a)).length2() == 0.0)
      return;
    for (osg::Vec3d const* corner : {&a, &b, &c})
      m_indices.push_back(m_welder.number(*corner));
  }

  Triangles result() const {
    Triangles result;
    result.vertices.reserve(m_welder.positions().size());
    for (osg::Vec3d const& v : m_welder.positions())
      result.vertices.push_back(zor::Vec3(v.x(), v.y(), v.z()));
    result.indices = m_indices;
    return result;
  }

private:
  VertexWelder<osg::Vec3d> m_welder;
  zor::UInt32Vector m_indices;
  osg::Matrixd m_toWorld;
  bool m_mirrored = false;
};

/** The positions of a vertex array of any type; empty for one that holds no positions. */
class PositionReader : public osg::ConstArrayVisitor {
public:
  void apply(osg::Vec2Array const& array) override {
    for (osg::Vec2 const& v : array)
      positions.emplace_back(v.x(), v.y(), 0.0);
  }
  void apply(osg::Vec3Array const& array) override { positions.assign(array.begin(), array.end()); }
  void apply(osg::Vec4Array const& array) override {
    for (osg::Vec4 const& v : array)
      positions.emplace_back(v.x(), v.y(), v.z());
  }
  void apply(osg::Vec2dArray const& array) override {
    for (osg::Vec2d const& v : array)
      positions.emplace_back(v.x(), v.y(), 0.0);
  }
  void apply(osg::Vec3dArray const& array) override { positions.assign(array.begin(), array.end()); }
  void apply(osg::Vec4dArray const& array) override {
    for (osg::Vec4d const& v : array)
      positions.emplace_back(v.x(), v.y(), v.z());
  }

  std::vector<osg::Vec3d> positions;
};

/** Receives the triangles of a mesh; the scene-graph library makes it by default construction. */
struct IndexSink {
  TriangleMerger* merger = nullptr;
  std::vector<osg::Vec3d> const* positions = nullptr;

  void operator()(unsigned int a, unsigned int b, unsigned int c) const {
    std::size_t const count = positions->size();
    if (a < count && b < count && c < count) // a file may name vertices that it doesn't have
      merger->add((*positions)[a], (*positions)[b], (*positions)[c]);
  }
};

/** Receives the triangles of a drawable that is no mesh. */
struct PositionSink {
  TriangleMerger* merger = nullptr;

  void operator()(osg::Vec3 const& a, osg::Vec3 const& b, osg::Vec3 const& c) const { merger->add(a, b, c); }
};

class TriangleCollector : public osg::NodeVisitor {
public:
  explicit TriangleCollector(osg::Matrixd const& above)
      : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN), m_above(above) {}

  void apply(osg::Drawable& drawable) override {
    place();
    osg::TriangleFunctor<PositionSink> sink;
    sink.merger = &merger;
    drawable.accept(sink);
  }

  // Asked for its triangles, a mesh gives only those over vertices in single precision.
  void apply(osg::Geometry& mesh) override {
    place();
    PositionReader reader;
    if (mesh.getVertexArray())
      mesh.getVertexArray()->accept(reader);
    osg::TriangleIndexFunctor<IndexSink> sink;
    sink.merger = &merger;
    sink.positions = &reader.positions;
    for (unsigned int i = 0; i < mesh.getNumPrimitiveSets(); ++i)
      mesh.getPrimitiveSet(i)->accept(sink);
  }

  TriangleMerger merger;

private:
  void place() { merger.place(osg::computeLocalToWorld(getNodePath()) * m_above); }

  osg::Matrixd m_above;
};

/** What the parents of a node do to it, if there is one answer. */
osg::Matrixd transformAbove(osg::Node& node) {
  osg::NodePathList paths = node.getParentalNodePaths();
  if (paths.size() != 1)
    return osg::Matrixd();
  paths.front().pop_back();
  return osg::computeLocalToWorld(paths.front());
}

} // namespace

Triangles collectTriangles(osg::Node& node) {
  TriangleCollector collector(transformAbove(node));
  node.accept(collector);
  return collector.merger.result();
}

} // namespace zorOSG
