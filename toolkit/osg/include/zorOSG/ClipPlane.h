#pragma once

#include <osg/ClipNode>
#include <osg/ClipPlane>
#include <osg/ref_ptr>

#include <zor/ParticleSystem.h>
#include <zor/Plane.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/ref_ptr.h>

namespace zorOSG {

/**
 * Cuts what lies below it in the scene graph with a plane: what is on the negative side, which the normal
 * points away from, is not drawn, casts no shadow, gets no outline and cannot be picked with the mouse, nor
 * by the rays of a PickHandler; the inside of a body that is cut open can. Planes may be nested; a thing is
 * drawn where all that are above it let it through. A group that is no clip plane, or nodes beside it, are
 * not affected, and neither is the simulation: rays of its space, contacts and sensors meet whole bodies.
 *
 * The plane is given in the coordinates of the node's parent. At most eight planes can be enabled at a time,
 * as many as graphics drivers offer.
 */
class ClipPlane : public osg::ClipNode {
public:
  /**
   * \param plane - the plane
   * \throws std::runtime_error when eight planes are enabled already
   */
  explicit ClipPlane(zor::Plane const& plane);

  /**
   * \param position - a point of the plane (m)
   * \param normal - towards what is kept, of any length
   * \throws std::invalid_argument if the normal is zero or a number is not finite
   * \throws std::runtime_error when eight planes are enabled already
   */
  ClipPlane(zor::Vec3 const& position, zor::Vec3 const& normal);

  /**
   * The plane a x + b y + c z + d = 0; what is positive is kept.
   * \param a - x component of the normal
   * \param b - y component of the normal
   * \param c - z component of the normal
   * \param d - distance from the origin against the normal, times the length of the normal
   * \throws std::invalid_argument if a, b and c are zero or a number is not finite
   * \throws std::runtime_error when eight planes are enabled already
   */
  ClipPlane(zor::Real a, zor::Real b, zor::Real c, zor::Real d);

  /** \param plane - the new plane; the position becomes its point nearest to the origin */
  void setClipPlane(zor::Plane const& plane);

  /** \param position - a point of the plane (m); the normal stays. Not finite throws std::invalid_argument */
  void setPosition(zor::Vec3 const& position);

  /** \return the point that the plane was placed by (m) */
  zor::Vec3 getPosition() const { return m_position; }

  /**
   * Turns the plane about its position.
   * \param normal - towards what is kept, of any length; zero or not finite throws std::invalid_argument
   */
  void setNormal(zor::Vec3 const& normal);

  /** \return direction towards what is kept, of length 1 */
  zor::Vec3 getNormal() const { return m_plane.getNormal(); }

  /**
   * \param enable - false to let everything be drawn
   * \throws std::runtime_error when eight other planes are enabled already
   */
  void setEnable(bool enable);

  /** \return true if the plane cuts */
  bool getEnable() const { return m_clip.valid(); }

  /** \return the plane */
  zor::Plane getPlane() const { return m_plane; }

  /**
   * Chooses the particle system that clipAgainstParticleSystem() cuts. What was cut before is whole again.
   * \param system - the particle system, which is held; null for none
   */
  void setParticleSystemToClip(zor::ParticleSystem* system);

  /**
   * Cuts the particle system, wherever its visuals are in the scene graph: particles whose centres are on the
   * negative side are not drawn. From then on the cut follows the particles and the plane, here taken in the
   * coordinates of the simulation, as long as the plane is enabled. Without a particle system, nothing
   * happens.
   */
  void clipAgainstParticleSystem();

protected:
  ~ClipPlane() override;

private:
  void place(zor::Plane const& plane, zor::Vec3 const& position);

  zor::Plane m_plane;
  zor::Vec3 m_position;
  osg::ref_ptr<osg::ClipPlane> m_clip; // null while disabled
  zor::ref_ptr<zor::ParticleSystem> m_particles;
};

} // namespace zorOSG
