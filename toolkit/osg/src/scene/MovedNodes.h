#pragma once

#include <mutex>
#include <vector>

#include <zorOSG/GeometryNode.h>

namespace zorOSG {

/**
 * The geometry nodes whose geometries have moved since they were last brought up to date. Those of one scene
 * are moved in one pass at the beginning of its update traversal; those of other scenes, which another thread
 * may be drawing, wait for theirs. A node that waits asks for update traversal, so that the traversals of any
 * viewer come to it.
 */
class MovedNodes {
public:
  static MovedNodes& instance();

  /** Called from any thread, once or many times before the next frame. */
  void add(GeometryNode& node);
  void remove(GeometryNode& node);

  /** Brings the nodes at or below root up to date. */
  void follow(osg::Node const& root);

private:
  static void askForUpdate(GeometryNode& node, bool ask);

  std::mutex m_mutex;
  std::vector<GeometryNode*> m_nodes; // each knows its place
};

/** \return where an update traversal began that has come to a node */
osg::Node const& rootOf(osg::NodeVisitor& visitor, osg::Node const& node);

} // namespace zorOSG
