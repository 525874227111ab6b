#pragma once

#include <mutex>
#include <unordered_map>
#include <vector>

#include <zorOSG/GeometryNode.h>

namespace zorOSG {

/** Which nodes follow which geometry, in the whole process: spares look-ups the way through the scene. */
class GeometryNodeRegistry {
public:
  static GeometryNodeRegistry& instance();

  void add(zorCollide::Geometry const* geometry, GeometryNode* node);
  void remove(zorCollide::Geometry const* geometry, GeometryNode* node);

  /** The nodes that follow a geometry, in any order, in the scene or not. */
  std::vector<GeometryNode*> find(zorCollide::Geometry const* geometry) const;

private:
  mutable std::mutex m_mutex;
  std::unordered_multimap<zorCollide::Geometry const*, GeometryNode*> m_nodes;
};

} // namespace zorOSG
