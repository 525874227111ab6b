#pragma once

#include <memory>

#include <zor/ContactMaterial.h>
#include <zor/Object.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/GeometryContact.h>
#include <zorCollide/RayHit.h>
#include <zorCollide/RayTable.h>

#ifndef SWIG
namespace zorBullet {
class SpaceImpl;
} // namespace zorBullet
namespace zorStream {
struct StateAccess;
} // namespace zorStream
#endif

namespace zorCollide {

/**
 * The geometries that can meet, and the answers to what meets what. A simulation has one; a space of its own
 * serves for collision queries without dynamics.
 */
class Space : public zor::Object {
public:
  Space();

  /**
   * Adds a geometry, which the space then holds.
   * \param geometry - the geometry; null, or one in another space, throws std::invalid_argument
   * \return false if it was in the space already
   */
  bool add(zorCollide::Geometry* geometry);

  /**
   * Removes a geometry.
   * \param geometry - the geometry
   * \return false if it is not in the space
   */
  bool remove(zorCollide::Geometry* geometry);

  /** \return the geometries in the order in which they were added */
  zorCollide::GeometryRefVector const& getGeometries() const { return m_geometries; }

  /** \return number of geometries */
  zor::UInt getNumGeometries() const { return m_geometries.size(); }

  /**
   * \param index - less than the number of geometries, else std::out_of_range
   * \return the geometry
   */
  zorCollide::Geometry* getGeometry(zor::UInt index) const;

  /**
   * Adds how two materials meet; replaces an earlier one for the same pair. The space holds it.
   * \param contactMaterial - the contact material; null throws std::invalid_argument
   */
  void add(zor::ContactMaterial* contactMaterial);

  /**
   * \param contactMaterial - the contact material
   * \return false if it is not in the space
   */
  bool remove(zor::ContactMaterial* contactMaterial);

  /**
   * \param material1 - a material
   * \param material2 - another
   * \return how the two meet, in either order; null if the default combination is used
   */
  zor::ContactMaterial* getContactMaterial(zor::Material const* material1,
                                           zor::Material const* material2) const;

  /**
   * Turns contacts between two groups of geometries off or on. Off wins where geometries are in several
   * groups.
   * \param group1 - a collision group
   * \param group2 - another, or the same for contacts within the group
   * \param enable - false to have no contacts
   */
  void setEnablePair(zor::UInt32 group1, zor::UInt32 group2, bool enable);

  /**
   * \param group1 - a collision group
   * \param group2 - another, or the same
   * \return false if contacts between the two were turned off
   */
  bool getEnablePair(zor::UInt32 group1, zor::UInt32 group2) const;

  /**
   * \param geometry1 - a geometry; null throws std::invalid_argument
   * \param geometry2 - another; null throws std::invalid_argument
   * \return true if all of enable, sensor, body, group and pair settings let the two have contacts
   */
  bool canCollide(zorCollide::Geometry const* geometry1, zorCollide::Geometry const* geometry2) const;

  /**
   * Casts a ray and gives the nearest geometry. A solid shape in which the ray starts is not met; a surface
   * (plane, triangle mesh, height field) is met from both sides.
   * \param origin - start (m, world)
   * \param direction - direction; need not have unit length, but zero or not finite throws
   * std::invalid_argument
   * \param maxDistance - length of the ray (m), positive; infinite lengths are allowed
   * \param includeSensors - true to meet sensors too
   * \return the nearest hit, or a miss
   */
  zorCollide::RayHit castRay(zor::Vec3 const& origin, zor::Vec3 const& direction,
                             zor::Real maxDistance = 1.0e6, bool includeSensors = false) const;

  /**
   * Casts a ray and gives the nearest hit on each shape of each geometry that it meets.
   * \param origin - start (m, world)
   * \param direction - direction, as for castRay
   * \param maxDistance - length of the ray (m), positive
   * \param includeSensors - true to meet sensors too
   * \return hits from near to far
   */
  zorCollide::RayHitVector castRayAll(zor::Vec3 const& origin, zor::Vec3 const& direction,
                                      zor::Real maxDistance = 1.0e6, bool includeSensors = false) const;

  /**
   * Casts many rays.
   * \param origins - starts (m, world); one, used for all rays, or one a direction, else
   * std::invalid_argument
   * \param directions - directions, as for castRay
   * \param maxDistance - length of the rays (m), positive
   * \param includeSensors - true to meet sensors too
   * \return the nearest hit, or a miss, for each direction
   */
  zorCollide::RayHitVector castRays(zor::Vec3Vector const& origins, zor::Vec3Vector const& directions,
                                    zor::Real maxDistance = 1.0e6, bool includeSensors = false) const;

  /**
   * Casts many rays and gives the answers as columns of numbers, which is what serves many thousands.
   * Parameters as for castRays.
   * \param origins - starts (m, world), one or one a direction
   * \param directions - directions
   * \param maxDistance - length of the rays (m), positive
   * \param includeSensors - true to meet sensors too
   * \return the nearest hit, or a miss, for each direction
   */
  zorCollide::RayTable castRayTable(zor::Vec3Vector const& origins, zor::Vec3Vector const& directions,
                                    zor::Real maxDistance = 1.0e6, bool includeSensors = false) const;

  /** \return all contacts of the last step or update */
  zorCollide::LocalGeometryContactVector getGeometryContacts() const;

  /**
   * \param geometry - a geometry
   * \return its contacts of the last step or update, the geometry being the first in each
   */
  zorCollide::LocalGeometryContactVector getGeometryContacts(zorCollide::Geometry const* geometry) const;

  /**
   * \param geometry1 - a geometry
   * \param geometry2 - another
   * \return their contact of the last step or update, in this order; none or one
   */
  zorCollide::LocalGeometryContactVector getGeometryContacts(zorCollide::Geometry const* geometry1,
                                                             zorCollide::Geometry const* geometry2) const;

  /**
   * \param body - a body
   * \return the contacts of its geometries, each being the first
   */
  zorCollide::LocalGeometryContactVector getGeometryContacts(zor::RigidBody const* body) const;

  /**
   * \param body1 - a body
   * \param body2 - another
   * \return the contacts between geometries of the two, those of body1 being the first
   */
  zorCollide::LocalGeometryContactVector getGeometryContacts(zor::RigidBody const* body1,
                                                             zor::RigidBody const* body2) const;

  /** Finds contacts where everything stands now, without a step; the contacts found have no forces. */
  void update();

#ifndef SWIG
  zorBullet::SpaceImpl& getImpl() const { return *m_impl; }
#endif

protected:
  ~Space() override;

private:
  friend class zorBullet::SpaceImpl;
  friend struct zorStream::StateAccess;

  GeometryRefVector m_geometries;
  std::unique_ptr<zorBullet::SpaceImpl> m_impl;
};

} // namespace zorCollide
