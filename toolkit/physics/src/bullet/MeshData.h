#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include <BulletCollision/CollisionShapes/btBvhTriangleMeshShape.h>
#include <BulletCollision/CollisionShapes/btTriangleIndexVertexArray.h>
#include <BulletCollision/CollisionShapes/btTriangleInfoMap.h>

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

#include "bullet/Hull.h"
#include "bullet/TriangleTree.h"

namespace zorBullet {

/** The triangles of a mesh and what is made of them once, on first use, for all geometries that share it. */
struct MeshData {
  MeshData(zor::Vec3Vector const& meshVertices, zor::UInt32Vector const& meshIndices);
  MeshData(MeshData const&) = delete;
  MeshData& operator=(MeshData const&) = delete;

  zor::Vec3Vector const vertices;
  zor::UInt32Vector const indices;

  btVector3 vertex(size_t triangle, size_t corner) const;

  /** The tree over the triangles, inside an engine shape that reads this data. */
  btBvhTriangleMeshShape& tree() const;
  /** The triangles as the engine reads them. */
  btStridingMeshInterface& triangles() const { return *m_triangles; }
  /** The triangles near a point, for particles. */
  TriangleTree const& nearTree() const;
  /** What the engine knows about each edge, so that bodies do not stumble over edges between flat neighbours.
   */
  btTriangleInfoMap& edges() const;
  /** Hull around all. */
  Hull const& hull() const;
  bool isClosed() const;
  /** Mass at unit density: of the enclosed solid, or of the hull when the mesh is not closed. */
  MassData massData() const;

private:
  bool computeClosed() const;

  std::unique_ptr<btTriangleIndexVertexArray> m_triangles;
  mutable std::once_flag m_treeOnce;
  mutable std::unique_ptr<btBvhTriangleMeshShape> m_tree;
  mutable std::once_flag m_nearTreeOnce;
  mutable std::unique_ptr<TriangleTree> m_nearTree;
  mutable std::once_flag m_edgesOnce;
  mutable btTriangleInfoMap m_edges;
  mutable std::once_flag m_hullOnce;
  mutable Hull m_hull;
  mutable std::once_flag m_closedOnce;
  mutable bool m_closed = false;
};

} // namespace zorBullet
