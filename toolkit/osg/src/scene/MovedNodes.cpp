#include "MovedNodes.h"

#include <osg/NodeVisitor>

#include "Ancestry.h"

namespace zorOSG {

namespace {

/** Whether nodes are below a root; most of them hang below the same parent as the one before. */
class BelowTest {
public:
  explicit BelowTest(osg::Node const& root) : m_root(&root) {}

  bool operator()(osg::Node const& node) {
    if (node.getNumParents() != 1)
      return isAtOrBelow(&node, m_root);
    if (node.getParent(0) != m_parent) {
      m_parent = node.getParent(0);
      m_isBelow = isAtOrBelow(m_parent, m_root);
    }
    return m_isBelow || &node == m_root;
  }

private:
  osg::Node const* m_root;
  osg::Node const* m_parent = nullptr;
  bool m_isBelow = false;
};

} // namespace

MovedNodes& MovedNodes::instance() {
  static MovedNodes& nodes = *new MovedNodes; // never destroyed: nodes in static storage may go later
  return nodes;
}

void MovedNodes::askForUpdate(GeometryNode& node, bool ask) {
  unsigned int const others = node.getNumChildrenRequiringUpdateTraversal();
  node.setNumChildrenRequiringUpdateTraversal(ask ? others + 1 : others - 1);
}

void MovedNodes::add(GeometryNode& node) {
  std::lock_guard const lock(m_mutex);
  if (node.m_movedPlace != GeometryNode::NOT_MOVED)
    return;
  m_nodes.push_back(&node);
  node.m_movedPlace = static_cast<std::uint32_t>(m_nodes.size() - 1);
  askForUpdate(node, true);
}

void MovedNodes::remove(GeometryNode& node) {
  std::lock_guard const lock(m_mutex);
  if (node.m_movedPlace == GeometryNode::NOT_MOVED)
    return;
  GeometryNode* const last = m_nodes.back();
  m_nodes[node.m_movedPlace] = last;
  last->m_movedPlace = node.m_movedPlace;
  m_nodes.pop_back();
  node.m_movedPlace = GeometryNode::NOT_MOVED;
  askForUpdate(node, false);
}

void MovedNodes::follow(osg::Node const& root) {
  std::lock_guard const lock(m_mutex);
  BelowTest isBelow(root);
  std::uint32_t waiting = 0;
  for (GeometryNode* const node : m_nodes) {
    if (!isBelow(*node)) {
      node->m_movedPlace = waiting;
      m_nodes[waiting++] = node;
      continue;
    }
    node->m_movedPlace = GeometryNode::NOT_MOVED;
    askForUpdate(*node, false);
    node->updateTransform();
  }
  m_nodes.resize(waiting);
}

osg::Node const& rootOf(osg::NodeVisitor& visitor, osg::Node const& node) {
  osg::NodePath const& path = visitor.getNodePath();
  return path.empty() ? node : *path.front();
}

} // namespace zorOSG
