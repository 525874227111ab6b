#pragma once

#include <cstdint>
#include <vector>

#include <LinearMath/btVector3.h>

namespace zorBullet {

/** Finds the triangles near a point. Reading it from several threads is safe. */
class TriangleTree {
public:
  struct Triangle {
    btVector3 corners[3];
  };

  explicit TriangleTree(std::vector<Triangle> triangles);

  /** Calls visit(triangle) for each whose box lies within a distance of a point. */
  template <class Visit>
  void visitNear(btVector3 const& point, double reach, Visit visit) const {
    uint32_t stack[64];
    size_t depth = 0;
    if (!m_nodes.empty())
      stack[depth++] = 0;
    while (depth > 0) {
      Node const& node = m_nodes[stack[--depth]];
      if (!isNear(node, point, reach))
        continue;
      if (node.count == 0) {
        stack[depth++] = node.first;
        stack[depth++] = node.first + 1;
        continue;
      }
      for (uint32_t i = node.first; i < node.first + node.count; ++i)
        visit(m_triangles[i]);
    }
  }

private:
  struct Node {
    btVector3 lower, upper;
    uint32_t first = 0; // triangle, or the first of two nodes
    uint32_t count = 0; // triangles; 0 for an inner node
  };

  static bool isNear(Node const& node, btVector3 const& point, double reach) {
    for (int axis = 0; axis < 3; ++axis)
      if (point[axis] < node.lower[axis] - reach || point[axis] > node.upper[axis] + reach)
        return false;
    return true;
  }
  void split(size_t node, uint32_t first, uint32_t count);

  std::vector<Triangle> m_triangles;
  std::vector<Node> m_nodes;
};

} // namespace zorBullet
