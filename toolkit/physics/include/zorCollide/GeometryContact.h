#pragma once

#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorCollide/ContactPoint.h>
#include <zorCollide/Geometry.h>

namespace zorCollide {

/** Two geometries that meet, and the points in which they do. Holds both geometries. */
class GeometryContact {
public:
  /** Creates a contact of nothing with nothing. */
  GeometryContact() = default;

  /**
   * \param geometry1 - first geometry
   * \param geometry2 - second geometry; may be null, as for the contact of a ray
   */
  GeometryContact(zorCollide::Geometry* geometry1, zorCollide::Geometry* geometry2)
      : m_geometry1(geometry1), m_geometry2(geometry2) {}

  /**
   * \param index - 0 for the first geometry, 1 for the second; another throws std::out_of_range
   * \return the geometry, or null
   */
  zorCollide::Geometry* getGeometry(zor::UInt index) const;
  /** \return first geometry, or null */
  zorCollide::Geometry* getGeometry1() const { return m_geometry1.get(); }
  /** \return second geometry, or null */
  zorCollide::Geometry* getGeometry2() const { return m_geometry2.get(); }

  /**
   * \param index - 0 for the first geometry, 1 for the second; another throws std::out_of_range
   * \return the body that carries the geometry, or null
   */
  zor::RigidBody* getRigidBody(zor::UInt index) const;

  /** \return the points; empty when nothing was met */
  zorCollide::ContactPointVector const& getPoints() const { return m_points; }

  /** \return true if there is no point */
  bool isEmpty() const { return m_points.empty(); }

  /** \return sum of the forces on the first geometry (N, world) */
  zor::Vec3 getForce() const;

  /** \param point - a further point */
  void addPoint(zorCollide::ContactPoint const& point) { m_points.push_back(point); }

  /** \return true if one of the two is a sensor, so that the contact has no forces */
  bool isSensorContact() const;

private:
  zor::ref_ptr<Geometry> m_geometry1;
  zor::ref_ptr<Geometry> m_geometry2;
  ContactPointVector m_points;
};

/** Contacts in a row, as a moment's copy that stays valid. */
typedef zor::Vector<zorCollide::GeometryContact> LocalGeometryContactVector;

} // namespace zorCollide
