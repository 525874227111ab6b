#pragma once

#include <zorCollide/Shape.h>

#ifndef SWIG
namespace zorBullet {
struct Hull;
} // namespace zorBullet
namespace zorStream {
struct StateAccess;
} // namespace zorStream
#endif

namespace zorCollide {

/** A convex polyhedron. */
class Convex : public Shape {
public:
  /**
   * Makes the convex hull of points.
   * \param vertices - at least four points (m) that do not lie in one plane, else std::invalid_argument
   */
  explicit Convex(zor::Vec3Vector const& vertices);

  /**
   * Keeps the given triangles for drawing and makes the convex hull of their vertices for contacts.
   * \param vertices - at least four points (m) that do not lie in one plane, else std::invalid_argument
   * \param indices - three vertex indices a triangle, counter-clockwise seen from outside
   */
  Convex(zor::Vec3Vector const& vertices, zor::UInt32Vector const& indices);

  /** \return the vertices (m): those given with indices, else the corners of the hull */
  zor::Vec3Vector const& getVertices() const { return m_vertices; }
  /** \return three vertex indices a triangle, counter-clockwise seen from outside */
  zor::UInt32Vector const& getIndices() const { return m_indices; }
  /** \return number of triangles */
  zor::UInt getNumTriangles() const { return m_indices.size() / 3; }

protected:
  ~Convex() override;

private:
  friend struct zorStream::StateAccess;
  explicit Convex(zorBullet::Hull const& hull);

  zor::Vec3Vector m_vertices;
  zor::UInt32Vector m_indices;
  zor::Vec3Vector m_points; // of which the hull was made, when no triangles were given
};

} // namespace zorCollide
