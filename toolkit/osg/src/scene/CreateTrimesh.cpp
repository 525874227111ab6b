#include <zorOSG/ReadNode.h>

#include <stdexcept>

#include <osg/Drawable>
#include <osg/NodeVisitor>
#include <osg/Transform>
#include <osg/TriangleFunctor>

#include "VertexWelder.h"

namespace zorOSG {

namespace {

/** Merges triangles, given one by one, into a mesh with shared vertices. */
class TriangleMerger {
public:
  TriangleMerger() : m_welder(1024) {}

  void add(osg::Vec3d const& a, osg::Vec3d const& b, osg::Vec3d const& c) {
    if (((b - a) ^ (c - a)).length2() == 0.0) // no area
      return;
    for (osg::Vec3d const* corner : {&a, &b, &c})
      m_indices.push_back(m_welder.number(*corner));
  }

  zor::Vec3Vector vertices() const {
    zor::Vec3Vector result;
    result.reserve(m_welder.positions().size());
    for (osg::Vec3d const& v : m_welder.positions())
      result.push_back(zor::Vec3(v.x(), v.y(), v.z()));
    return result;
  }

  zor::UInt32Vector const& indices() const { return m_indices; }

private:
  VertexWelder<osg::Vec3d> m_welder;
  zor::UInt32Vector m_indices;
};

/** Receives the triangles of one drawable; the scene-graph library makes it by default construction. */
struct TriangleSink {
  TriangleMerger* merger = nullptr;
  osg::Matrixd toWorld;
  bool mirrored = false;

  void operator()(osg::Vec3 const& a, osg::Vec3 const& b, osg::Vec3 const& c) const {
    osg::Vec3d const first = osg::Vec3d(a) * toWorld, second = osg::Vec3d(b) * toWorld,
                     third = osg::Vec3d(c) * toWorld;
    if (mirrored) // keeps the outside outside
      merger->add(first, third, second);
    else
      merger->add(first, second, third);
  }
};

bool isMirrored(osg::Matrixd const& m) {
  osg::Vec3d const x(m(0, 0), m(0, 1), m(0, 2)), y(m(1, 0), m(1, 1), m(1, 2)), z(m(2, 0), m(2, 1), m(2, 2));
  return (x ^ y) * z < 0.0;
}

class TriangleCollector : public osg::NodeVisitor {
public:
  explicit TriangleCollector(osg::Matrixd const& above)
      : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN), m_above(above) {}

  void apply(osg::Drawable& drawable) override {
    osg::TriangleFunctor<TriangleSink> sink;
    sink.merger = &merger;
    sink.toWorld = osg::computeLocalToWorld(getNodePath()) * m_above;
    sink.mirrored = isMirrored(sink.toWorld);
    drawable.accept(sink);
  }

  TriangleMerger merger;

private:
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

zorCollide::Trimesh* createTrimesh(osg::Node* node) {
  if (!node)
    throw std::runtime_error("createTrimesh: the node is null");
  TriangleCollector collector(transformAbove(*node));
  node->accept(collector);
  if (collector.merger.indices().empty())
    throw std::runtime_error("createTrimesh: no triangles below node \"" + node->getName() + "\"");
  return new zorCollide::Trimesh(collector.merger.vertices(), collector.merger.indices(), node->getName());
}

} // namespace zorOSG
