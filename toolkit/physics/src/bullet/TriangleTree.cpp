#include "bullet/TriangleTree.h"

#include <algorithm>

namespace zorBullet {

namespace {

constexpr uint32_t LEAF_SIZE = 4;

double middle(TriangleTree::Triangle const& triangle, int axis) {
  return triangle.corners[0][axis] + triangle.corners[1][axis] + triangle.corners[2][axis];
}

} // namespace

TriangleTree::TriangleTree(std::vector<Triangle> triangles) : m_triangles(std::move(triangles)) {
  if (m_triangles.empty())
    return;
  m_nodes.reserve(m_triangles.size());
  m_nodes.emplace_back();
  split(0, 0, static_cast<uint32_t>(m_triangles.size()));
}

// Halves at the median: the depth is that of the logarithm of the count, whatever the mesh.
void TriangleTree::split(size_t index, uint32_t first, uint32_t count) {
  btVector3 lower = m_triangles[first].corners[0], upper = lower;
  for (uint32_t i = first; i < first + count; ++i)
    for (btVector3 const& corner : m_triangles[i].corners) {
      lower.setMin(corner);
      upper.setMax(corner);
    }
  m_nodes[index] = Node{lower, upper, first, count};
  if (count <= LEAF_SIZE)
    return;
  int const axis = (upper - lower).maxAxis();
  uint32_t const half = count / 2;
  auto const begin = m_triangles.begin() + first;
  std::nth_element(begin, begin + half, begin + count, [axis](Triangle const& a, Triangle const& b) {
    return middle(a, axis) < middle(b, axis);
  });
  auto const children = static_cast<uint32_t>(m_nodes.size());
  m_nodes.emplace_back();
  m_nodes.emplace_back();
  m_nodes[index].first = children;
  m_nodes[index].count = 0;
  split(children, first, half);
  split(children + 1, first + half, count - half);
}

} // namespace zorBullet
