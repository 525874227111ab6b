#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>

#include <ostream>

namespace zor {

/** Plane of all points p with normal * p + d = 0. The normal has length 1 and points to the positive side. */
class Plane {
public:
  /** The plane z = 0 with its positive side up. */
  Plane() = default;

  /**
   * \param normal - any length
   * \param point - a point of the plane
   * \throws std::invalid_argument if normal is null or a number is not finite
   */
  Plane(Vec3 const& normal, Vec3 const& point);

  /** The plane a x + b y + c z + d = 0. \throws std::invalid_argument if a, b and c are 0 or one is not
   * finite */
  Plane(Real a, Real b, Real c, Real d);

  /** The plane through three points, seen counterclockwise. \throws std::invalid_argument if they stand in
   * line */
  Plane(Vec3 const& p1, Vec3 const& p2, Vec3 const& p3);

  /** \return the direction of the positive side, of length 1 */
  Vec3 const& getNormal() const { return m_normal; }

  /** Turns the plane about its point nearest to the origin. */
  void setNormal(Vec3 const& normal);

  /** \return the point of the plane that is nearest to the origin */
  Vec3 getPoint() const { return m_normal * -m_d; }

  /** \param point - a point of the plane; the normal stays */
  void setPoint(Vec3 const& point);

  /** \return the x component of the normal */
  Real a() const { return m_normal.x(); }
  /** \return the y component of the normal */
  Real b() const { return m_normal.y(); }
  /** \return the z component of the normal */
  Real c() const { return m_normal.z(); }
  /** \return the number d of normal * p + d = 0: minus the distance from the origin, along the normal */
  Real d() const { return m_d; }

  /** \return distance of a point in metres, negative on the negative side */
  Real distance(Vec3 const& point) const { return m_normal * point + m_d; }

  /** \return the point of the plane that is nearest to point */
  Vec3 project(Vec3 const& point) const { return point - m_normal * distance(point); }

  bool operator==(Plane const& other) const { return m_normal == other.m_normal && m_d == other.m_d; }

private:
  Vec3 m_normal{0, 0, 1};
  Real m_d = 0;
};

std::ostream& operator<<(std::ostream& stream, Plane const& plane);

} // namespace zor
