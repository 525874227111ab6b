#include <zorOSG/SmoothNormals.h>

#include <set>
#include <vector>

#include <osg/Geometry>
#include <osg/NodeVisitor>
#include <osgUtil/SmoothingVisitor>

#include "Checks.h"
#include "MeshBuilder.h"
#include "SeamSmoother.h"
#include "ShapeMeshCache.h"

namespace zorOSG {

namespace {

/** Finds the meshes below a node, each once for every parent that holds it. */
class MeshCollector : public osg::NodeVisitor {
public:
  struct Place {
    osg::ref_ptr<osg::Geometry> mesh;
    osg::Group* parent;
    auto operator<=>(Place const&) const = default;
  };

  MeshCollector() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) { setNodeMaskOverride(~0u); }

  void apply(osg::Geometry& mesh) override {
    osg::NodePath const& path = getNodePath();
    osg::Group* parent = path.size() > 1 ? path[path.size() - 2]->asGroup() : nullptr;
    Place const place{&mesh, parent};
    if (m_seen.insert(place).second)
      places.push_back(place);
  }

  std::vector<Place> places;

private:
  std::set<Place> m_seen;
};

} // namespace

int smoothNormals(osg::Node* node, float creaseAngle) {
  requireFinite("smoothNormals", "creaseAngle", creaseAngle);
  if (!node)
    return 0;
  MeshCollector collector;
  node->accept(collector);
  for (auto& [mesh, parent] : collector.places) {
    // Visuals of equal shapes share one mesh; only the one below this node may change.
    if (parent && (mesh->getNumParents() > 1 || ShapeMeshCache::isShared(*mesh))) {
      osg::ref_ptr<osg::Geometry> const copy = ShapeMeshCache::makePrivate(*mesh);
      parent->replaceChild(mesh, copy);
      mesh = copy;
    }
    osgUtil::SmoothingVisitor::smooth(*mesh, creaseAngle);
    smoothSeams(*mesh, creaseAngle);
    useVertexBuffers(*mesh);
    mesh->dirtyGLObjects();
  }
  return static_cast<int>(collector.places.size());
}

} // namespace zorOSG
