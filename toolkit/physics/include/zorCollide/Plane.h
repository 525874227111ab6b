#pragma once

#include <zor/Plane.h>
#include <zorCollide/Shape.h>

namespace zorCollide {

/** A half space: everything behind an infinite plane is solid. A body that holds one must not be dynamic. */
class Plane : public Shape {
public:
  /**
   * \param normal - direction out of the solid side; need not have unit length, but zero or not finite throws
   * std::invalid_argument
   * \param point - a point on the plane (m)
   */
  Plane(zor::Vec3 const& normal, zor::Vec3 const& point);

  /** \param plane - the plane; its normal points out of the solid side */
  explicit Plane(zor::Plane const& plane);

  /** \return unit normal, out of the solid side */
  zor::Vec3 getNormal() const { return m_normal; }
  /** \return the point on the plane that was given (m) */
  zor::Vec3 getPoint() const { return m_point; }
  /** \return the plane */
  zor::Plane getPlane() const;

protected:
  ~Plane() override = default;

private:
  zor::Vec3 m_normal;
  zor::Vec3 m_point;
};

} // namespace zorCollide
