#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

namespace zorCollide {

/** One point in which two geometries meet, as it was in the last step. */
class ContactPoint {
public:
  ContactPoint() = default;

  /**
   * \param point - where (m, world)
   * \param normal - unit normal from the second geometry to the first (world)
   * \param depth - how deep the two overlap (m); negative for a gap
   */
  ContactPoint(zor::Vec3 const& point, zor::Vec3 const& normal, zor::Real depth)
      : m_point(point), m_normal(normal), m_depth(depth) {}

  /** \return where, in the world (m) */
  zor::Vec3 getPoint() const { return m_point; }
  /** \return unit normal from the second geometry to the first, in the world */
  zor::Vec3 getNormal() const { return m_normal; }
  /** \return how deep the two overlap (m); negative for a gap */
  zor::Real getDepth() const { return m_depth; }

  /** \return normal force on the first geometry (N, world) */
  zor::Vec3 getNormalForce() const { return m_normal * m_normalForce; }
  /** \return magnitude of the normal force (N) */
  zor::Real getNormalForceMagnitude() const { return m_normalForce; }
  /** \return friction force on the first geometry (N, world) */
  zor::Vec3 getTangentialForce() const { return m_tangentialForce; }
  /** \return magnitude of the friction force (N) */
  zor::Real getTangentialForceMagnitude() const { return m_tangentialForce.length(); }
  /** \return normal and friction force on the first geometry (N, world) */
  zor::Vec3 getForce() const { return getNormalForce() + m_tangentialForce; }

  /** \param force - magnitude of the normal force (N) */
  void setNormalForceMagnitude(zor::Real force) { m_normalForce = force; }
  /** \param force - friction force on the first geometry (N, world) */
  void setTangentialForce(zor::Vec3 const& force) { m_tangentialForce = force; }

private:
  zor::Vec3 m_point;
  zor::Vec3 m_normal{0.0, 0.0, 1.0};
  zor::Real m_depth = 0.0;
  zor::Real m_normalForce = 0.0;
  zor::Vec3 m_tangentialForce;
};

/** Contact points in a row. */
typedef zor::Vector<zorCollide::ContactPoint> ContactPointVector;

} // namespace zorCollide
