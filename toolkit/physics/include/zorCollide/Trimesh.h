#pragma once

#include <memory>

#include <zorCollide/Shape.h>

#ifndef SWIG
namespace zorBullet {
struct MeshData;
} // namespace zorBullet
#endif

namespace zorCollide {

/**
 * A surface of triangles.
 *
 * A geometry that does not move collides with the triangles themselves, from both sides. A geometry of a
 * dynamic body collides with convex parts that enclose the triangles, because contacts between two bare
 * surfaces are neither fast nor stable; rays always meet the triangles.
 */
class Trimesh : public Shape {
public:
  /**
   * \param vertices - vertices (m); one that is not finite throws std::invalid_argument
   * \param indices - three vertex indices a triangle, counter-clockwise seen from outside; none, a count that
   * is no multiple of three, or an index beyond the vertices throws std::invalid_argument. Triangles without
   * area are kept
   * \param name - name of the mesh, for messages
   */
  Trimesh(zor::Vec3Vector const& vertices, zor::UInt32Vector const& indices, zor::String const& name = "");

  /** \return the vertices (m) */
  zor::Vec3Vector const& getVertices() const;
  /** \return three vertex indices a triangle */
  zor::UInt32Vector const& getIndices() const;
  /** \return number of triangles */
  zor::UInt getNumTriangles() const { return getIndices().size() / 3; }

  /** \return true if every edge belongs to exactly two triangles of opposite sense */
  bool isClosed() const;

  /**
   * Sets the number of convex parts with which a dynamic body collides in place of the triangles.
   * \param count - 1 (the default: one hull around all) to 64; outside throws std::invalid_argument
   */
  void setNumConvexParts(zor::UInt count);
  /** \return greatest number of convex parts of a dynamic body */
  zor::UInt getNumConvexParts() const { return m_numConvexParts; }

protected:
  ~Trimesh() override;

private:
  Trimesh(std::shared_ptr<zorBullet::MeshData> data, zor::String const& name);

  std::shared_ptr<zorBullet::MeshData> m_data; // shared with the engine's shapes
  zor::UInt m_numConvexParts = 1;
};

} // namespace zorCollide
