#include <zorOSG/Lookup.h>

#include <algorithm>

#include <osg/NodeVisitor>

#include "GeometryNodeRegistry.h"
#include "SceneIndex.h"

namespace zorOSG {

namespace {

/** Collects the nodes of one geometry; below a node that several groups share, each node once. */
class GeometryNodeFinder : public osg::NodeVisitor {
public:
  GeometryNodeFinder(zorCollide::Geometry const* geometry, bool onlyFirst)
      : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), m_geometry(geometry), m_onlyFirst(onlyFirst) {
    setNodeMaskOverride(~0u); // hidden visuals are found as well
  }

  void apply(osg::Group& group) override {
    if (!finished())
      traverse(group);
  }

  // Leaves hold no geometry node.
  void apply(osg::Geode&) override {}
  void apply(osg::Drawable&) override {}

  void apply(osg::Transform& transform) override {
    if (finished())
      return;
    GeometryNode* node = asGeometryNode(&transform);
    if (node && node->getGeometry() == m_geometry &&
        std::find(found.begin(), found.end(), node) == found.end())
      found.push_back(node);
    traverse(transform);
  }

  GeometryNodePtrVector found;

private:
  bool finished() const { return m_onlyFirst && !found.empty(); }

  zorCollide::Geometry const* m_geometry;
  bool m_onlyFirst;
};

bool isBelow(osg::Node const& node, osg::Group const* root) {
  if (&node == root)
    return true;
  for (unsigned int i = 0; i < node.getNumParents(); ++i)
    if (isBelow(*node.getParent(i), root))
      return true;
  return false;
}

GeometryNodePtrVector find(zorCollide::Geometry const* geometry, osg::Group* root, bool onlyFirst) {
  GeometryNodePtrVector found;
  if (!geometry || !root)
    return found;
  for (GeometryNode* node : GeometryNodeRegistry::instance().find(geometry))
    if (isBelow(*node, root))
      found.push_back(node);
  if (found.size() < 2)
    return found;
  GeometryNodeFinder finder(geometry, onlyFirst); // the order of the scene
  root->accept(finder);
  return finder.found;
}

} // namespace

zorOSG::GeometryNode* asGeometryNode(osg::Node* node) {
  return dynamic_cast<GeometryNode*>(node);
}

zorOSG::GeometryNode* findGeometryNode(zorCollide::Geometry const* geometry, osg::Group* root) {
  GeometryNodePtrVector const nodes = find(geometry, root, true);
  return nodes.empty() ? nullptr : nodes[0];
}

zorOSG::GeometryNodePtrVector findGeometryNodes(zorCollide::Geometry const* geometry, osg::Group* root) {
  return find(geometry, root, false);
}

zorOSG::ParticleSystemDrawable* findParticleSystemDrawable(osg::Group* root) {
  return findFirstBelow<ParticleSystemDrawable>(root);
}

} // namespace zorOSG
