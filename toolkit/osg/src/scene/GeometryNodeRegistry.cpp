#include "GeometryNodeRegistry.h"

namespace zorOSG {

GeometryNodeRegistry& GeometryNodeRegistry::instance() {
  // Never destroyed: nodes in static storage may go later than it would.
  static GeometryNodeRegistry& registry = *new GeometryNodeRegistry;
  return registry;
}

void GeometryNodeRegistry::add(zorCollide::Geometry const* geometry, GeometryNode* node) {
  std::lock_guard const lock(m_mutex);
  m_nodes.emplace(geometry, node);
}

void GeometryNodeRegistry::remove(zorCollide::Geometry const* geometry, GeometryNode* node) {
  std::lock_guard const lock(m_mutex);
  auto const [first, last] = m_nodes.equal_range(geometry);
  for (auto it = first; it != last; ++it) {
    if (it->second != node)
      continue;
    m_nodes.erase(it);
    return;
  }
}

std::vector<GeometryNode*> GeometryNodeRegistry::find(zorCollide::Geometry const* geometry) const {
  std::lock_guard const lock(m_mutex);
  std::vector<GeometryNode*> nodes;
  auto const [first, last] = m_nodes.equal_range(geometry);
  for (auto it = first; it != last; ++it)
    nodes.push_back(it->second);
  return nodes;
}

} // namespace zorOSG
