#include "bullet/MeshData.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include <BulletCollision/CollisionDispatch/btInternalEdgeUtility.h>

#include "bullet/Conversions.h"

namespace zorBullet {
namespace {

// Beyond this number the compressed tree has no room for a triangle's index.
constexpr size_t maxCompressedTriangles = size_t(1) << 21;

std::unique_ptr<btTriangleIndexVertexArray> makeArray(zor::Vec3Vector const& vertices,
                                                      zor::UInt32Vector const& indices) {
  static_assert(sizeof(zor::Vec3) == 3 * sizeof(double) && sizeof(int) == sizeof(zor::UInt32));
  constexpr auto limit = static_cast<size_t>(std::numeric_limits<int>::max());
  if (vertices.size() > limit || indices.size() > limit)
    throw std::invalid_argument("Trimesh: more than 2147483647 vertices or indices");
  btIndexedMesh mesh;
  mesh.m_numTriangles = static_cast<int>(indices.size() / 3);
  mesh.m_triangleIndexBase = reinterpret_cast<unsigned char const*>(indices.data());
  mesh.m_triangleIndexStride = 3 * static_cast<int>(sizeof(zor::UInt32));
  mesh.m_numVertices = static_cast<int>(vertices.size());
  mesh.m_vertexBase = reinterpret_cast<unsigned char const*>(vertices.data());
  mesh.m_vertexStride = static_cast<int>(sizeof(zor::Vec3));
  mesh.m_vertexType = PHY_DOUBLE;
  auto array = std::make_unique<btTriangleIndexVertexArray>();
  array->addIndexedMesh(mesh, PHY_INTEGER);
  return array;
}

} // namespace

MeshData::MeshData(zor::Vec3Vector const& meshVertices, zor::UInt32Vector const& meshIndices)
    : vertices(meshVertices), indices(meshIndices), m_triangles(makeArray(vertices, indices)) {}

btVector3 MeshData::vertex(size_t triangle, size_t corner) const {
  return toBt(vertices[indices[3 * triangle + corner]]);
}

btBvhTriangleMeshShape& MeshData::tree() const {
  std::call_once(m_treeOnce, [this] {
    bool const compressed = indices.size() / 3 < maxCompressedTriangles;
    m_tree = std::make_unique<btBvhTriangleMeshShape>(m_triangles.get(), compressed, true);
  });
  return *m_tree;
}

TriangleTree const& MeshData::nearTree() const {
  std::call_once(m_nearTreeOnce, [this] {
    std::vector<TriangleTree::Triangle> triangles(indices.size() / 3);
    for (size_t i = 0; i < triangles.size(); ++i)
      for (size_t corner = 0; corner < 3; ++corner)
        triangles[i].corners[corner] = vertex(i, corner);
    m_nearTree = std::make_unique<TriangleTree>(std::move(triangles));
  });
  return *m_nearTree;
}

btTriangleInfoMap& MeshData::edges() const {
  std::call_once(m_edgesOnce, [this] {
    btGenerateInternalEdgeInfo(&tree(), &m_edges);
    tree().setTriangleInfoMap(nullptr); // the tree serves rays only
  });
  return m_edges;
}

Hull const& MeshData::hull() const {
  std::call_once(m_hullOnce, [this] {
    std::vector<btVector3> const points = toBt(vertices);
    m_hull = Hull::of(points.data(), points.size());
  });
  return m_hull;
}

bool MeshData::isClosed() const {
  std::call_once(m_closedOnce, [this] { m_closed = computeClosed(); });
  return m_closed;
}

// Model files repeat vertices along seams, so that vertices are the same when their places are.
bool MeshData::computeClosed() const {
  std::vector<zor::UInt32> order(vertices.size()), place(vertices.size());
  for (zor::UInt32 i = 0; i < order.size(); ++i)
    order[i] = i;
  auto const less = [this](zor::UInt32 a, zor::UInt32 b) {
    return std::lexicographical_compare(vertices[a].ptr(), vertices[a].ptr() + 3, vertices[b].ptr(),
                                        vertices[b].ptr() + 3);
  };
  std::sort(order.begin(), order.end(), less);
  for (size_t i = 0; i < order.size(); ++i)
    place[order[i]] = i > 0 && !less(order[i - 1], order[i]) ? place[order[i - 1]] : order[i];

  std::vector<std::pair<zor::UInt32, zor::UInt32>> edges, reverse;
  for (size_t i = 0; i < indices.size(); ++i) {
    zor::UInt32 const from = place[indices[i]], to = place[indices[i % 3 == 2 ? i - 2 : i + 1]];
    if (from == to)
      continue; // a triangle without area
    edges.emplace_back(from, to);
    reverse.emplace_back(to, from);
  }
  std::sort(edges.begin(), edges.end());
  std::sort(reverse.begin(), reverse.end());
  bool const once = std::adjacent_find(edges.begin(), edges.end()) == edges.end();
  return !edges.empty() && once && edges == reverse;
}

MassData MeshData::massData() const {
  if (isClosed()) {
    std::vector<btVector3> const points = toBt(vertices);
    MassData const solid = solidMassData(points.data(), points.size(), indices.data(), indices.size());
    if (solid.mass > 0.0) // not inside out
      return solid;
  }
  Hull const& around = hull();
  return solidMassData(around.corners.data(), around.corners.size(), around.indices.data(),
                       around.indices.size());
}

} // namespace zorBullet
