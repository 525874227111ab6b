#pragma once

#include <memory>
#include <string>

#include <zor/AffineMatrix4x4.h>
#include <zor/ForceStatistics.h>
#include <zor/Frame.h>
#include <zor/Object.h>
#include <zor/RangeReal.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

namespace zorSDK {
class Simulation;
}

#ifndef SWIG
namespace zorBullet {
class ConstraintImpl;
} // namespace zorBullet
#endif

namespace zor {

class RigidBody;

/** A joint between two rigid bodies, or between one and the world.
 *
 * Each body has an attachment frame; the constraint holds the two frames together but for the degrees of
 * freedom that the kind leaves free. The z axis of the attachment frames is the joint's axis. The constraint
 * holds references to its bodies and is simulated while it is added to the simulation of its bodies.
 */
class Constraint : public Object {
public:
  /** \param index 0 or 1.
   * \return The body, or null for the world.
   * \throws std::out_of_range For another index.
   */
  zor::RigidBody* getBody(zor::UInt index) const;

  /** \return 1 when the constraint is attached to the world, else 2. */
  zor::UInt getNumBodies() const;

  /** \param index 0 or 1.
   * \return Attachment frame of the body (of the world for a missing second one), owned by the constraint.
   *         Its parent is the body's model frame.
   * \throws std::out_of_range For another index.
   */
  zor::Frame* getAttachment(zor::UInt index) const;

  /** \param index 0 or 1.
   * \return Where the attachment is in the world now.
   * \throws std::out_of_range For another index.
   */
  zor::AffineMatrix4x4 getAttachmentTransform(zor::UInt index) const;

  /** Turns the constraint on or off. */
  void setEnable(bool enable);
  /** \return Whether the constraint acts. */
  bool getEnable() const;

  /** Lets the constraint's bodies collide with each other, or not.
   * \param enable False by default: joined bodies usually overlap at the joint.
   */
  void setEnableCollisions(bool enable);
  /** \return Whether the constraint's bodies collide with each other. */
  bool getEnableCollisions() const;

  /** \return Number of degrees of freedom that the constraint takes away, controllers not counted. */
  zor::UInt getNumDOF() const;

  /** Sets how much the constraint yields in the directions that it takes away.
   * \param compliance In m/N (rad/(N m) for rotations), zero or more; zero is rigid.
   */
  void setCompliance(zor::Real compliance);
  /** \return Compliance in m/N or rad/(N m). */
  zor::Real getCompliance() const;

  /** Sets the time over which a deviation is worked off.
   * \param damping In seconds, zero or more.
   */
  void setDamping(zor::Real damping);
  /** \return Relaxation time in seconds. */
  zor::Real getDamping() const;

  /** Bounds each force and torque with which the constraint holds the directions that it takes away.
   * \param range Lowest and highest force in N or N m; zero inside.
   * \throws std::invalid_argument When a bound is NaN or zero is outside.
   */
  void setForceRange(zor::RangeReal const& range);
  /** \return Lowest and highest force; unbounded by default. */
  zor::RangeReal getForceRange() const;

  /** \param dof Which of the directions taken away, smaller than getNumDOF.
   * \return Force (N) or torque (N m) used in that direction in the last step.
   * \throws std::out_of_range For another index.
   */
  zor::Real getCurrentForce(zor::UInt dof) const;

  /** Total force and torque that the constraint, controllers included, put on one of its bodies in the last
   * step.
   * \param index 0 or 1.
   * \param force Receives the force in N, world axes.
   * \param torque Receives the torque in N m about the body's centre of mass, world axes.
   * \return False (and zeros) when the constraint was not part of the last step or the body is missing.
   * \throws std::out_of_range For another index.
   */
  bool getLastForce(zor::UInt index, zor::Vec3& force, zor::Vec3& torque) const;

  /** Collects statistics of the constraint's forces, and of those of its controllers, from now on. Costs
   * nothing while it is off.
   * \param enable Off by default; turning it on, also when it is on, starts again from nothing. */
  void setEnableForceStatistics(bool enable);
  /** \return Whether statistics are collected. */
  bool getEnableForceStatistics() const;
  /** \return Magnitudes, in N, of the total force on the first body in all steps since the statistics were
   *         turned on; without any values when they are off. Steps in which the bodies sleep do not count. */
  zor::ForceStatistics getForceStatistics() const;
  /** \return As getForceStatistics, for the torque about the first body's centre of mass in N m. */
  zor::ForceStatistics getTorqueStatistics() const;

  /** \return The simulation that the constraint is in, or null. */
  zorSDK::Simulation* getSimulation() const;

#ifndef SWIG
  zorBullet::ConstraintImpl& getImpl() const { return *m_impl; }
#endif

protected:
  explicit Constraint(std::unique_ptr<zorBullet::ConstraintImpl> impl);
  ~Constraint() override;

  std::unique_ptr<zorBullet::ConstraintImpl> m_impl;
};

using ConstraintRefVector = Vector<ref_ptr<Constraint>>;

} // namespace zor
