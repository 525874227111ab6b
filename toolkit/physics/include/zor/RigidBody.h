#pragma once

#include <memory>
#include <string>

#include <zor/AffineMatrix4x4.h>
#include <zor/Frame.h>
#include <zor/MassProperties.h>
#include <zor/Object.h>
#include <zor/Quat.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

#include <zorCollide/Geometry.h>

namespace zorSDK {
class Simulation;
}

#ifndef SWIG
namespace zorBullet {
class BodyImpl;
} // namespace zorBullet
#endif

namespace zor {

/** A rigid body: any number of geometries that move as one.
 *
 * The model frame (getTransform) is where geometries are placed; the centre of mass may lie elsewhere
 * (getCmTransform). Velocities are those of the centre of mass. All values are in world coordinates and SI
 * units unless the name says local. Setting a non-finite value throws std::invalid_argument.
 */
class RigidBody : public Object {
public:
  /** How the body moves. */
  enum MotionControl : int {
    STATIC = 1,     /**< Does not move. */
    KINEMATICS = 2, /**< Moves by its given velocity; forces do not change it. */
    DYNAMICS = 3    /**< Moves by forces. */
  };

  /** \param name Name, used for look-up; need not be unique. */
  explicit RigidBody(std::string const& name = "");

  /** Creates a body with one geometry at its origin.
   * \param geometry Geometry to hold, not null and not part of another body.
   * \param name Name, used for look-up.
   * \throws std::invalid_argument As add does.
   */
  explicit RigidBody(zorCollide::Geometry* geometry, std::string const& name = "");

  /** Adds a geometry; the body holds a reference to it.
   * \param geometry Geometry, not null.
   * \param localTransform Rigid transform of the geometry in the model frame.
   * \return False, with a warning, when the geometry is already part of this or another body or was added to
   *         a simulation by itself.
   * \throws std::invalid_argument When the geometry is null or the transform is not rigid.
   */
  bool add(zorCollide::Geometry* geometry,
           zor::AffineMatrix4x4 const& localTransform = zor::AffineMatrix4x4());

  /** Removes a geometry.
   * \return False when it is not part of this body.
   * \throws std::invalid_argument When the geometry is null.
   */
  bool remove(zorCollide::Geometry* geometry);

  /** \return The geometries in order of addition; valid until one is added or removed. */
  zorCollide::GeometryRefVector const& getGeometries() const;

  /** Sets the position of the model frame, in metres. */
  void setPosition(zor::Vec3 const& position);
  /** \return Position of the model frame, in metres. */
  zor::Vec3 getPosition() const;
  /** Sets the rotation of the model frame. The quaternion is normalised; a zero one is an error. */
  void setRotation(zor::Quat const& rotation);
  /** \return Rotation of the model frame. */
  zor::Quat getRotation() const;
  /** Sets position and rotation of the model frame.
   * \throws std::invalid_argument When the matrix is not a rigid transform.
   */
  void setTransform(zor::AffineMatrix4x4 const& transform);
  /** \return Transform from the model frame to the world. */
  zor::AffineMatrix4x4 getTransform() const;

  /** Sets the position of the centre of mass, in metres; the rotation stays. */
  void setCmPosition(zor::Vec3 const& position);
  /** \return Position of the centre of mass, in metres. */
  zor::Vec3 getCmPosition() const;
  /** \return Rotation of the centre-of-mass frame, the same as that of the model frame. */
  zor::Quat getCmRotation() const;
  /** \return Transform from the centre-of-mass frame (axes as the model frame) to the world. */
  zor::AffineMatrix4x4 getCmTransform() const;

  /** Sets the velocity of the centre of mass, in m/s. */
  void setVelocity(zor::Vec3 const& velocity);
  /** \return Velocity of the centre of mass, in m/s. */
  zor::Vec3 getVelocity() const;
  /** Sets the angular velocity, in rad/s. */
  void setAngularVelocity(zor::Vec3 const& velocity);
  /** \return Angular velocity, in rad/s. */
  zor::Vec3 getAngularVelocity() const;
  /** Sets the velocity of the centre of mass along the axes of the model frame, in m/s. */
  void setLocalVelocity(zor::Vec3 const& velocity);
  /** \return Velocity of the centre of mass along the axes of the model frame, in m/s. */
  zor::Vec3 getLocalVelocity() const;
  /** Sets the angular velocity about the axes of the model frame, in rad/s. */
  void setLocalAngularVelocity(zor::Vec3 const& velocity);
  /** \return Angular velocity about the axes of the model frame, in rad/s. */
  zor::Vec3 getLocalAngularVelocity() const;
  /** \return Velocity of the material point of the body that is now at the given world point, in m/s. */
  zor::Vec3 getVelocityAt(zor::Vec3 const& worldPoint) const;
  /** \return Acceleration of the centre of mass over the last step, in m/s^2. */
  zor::Vec3 getAcceleration() const;
  /** \return Angular acceleration over the last step, in rad/s^2. */
  zor::Vec3 getAngularAcceleration() const;

  /** Adds a force at the centre of mass, in newtons, for the next step only. */
  void addForce(zor::Vec3 const& force);
  /** Adds a torque, in newton metres, for the next step only. */
  void addTorque(zor::Vec3 const& torque);
  /** Adds a force at a point, for the next step only.
   * \param force In newtons.
   * \param worldPoint In metres.
   */
  void addForceAtPosition(zor::Vec3 const& force, zor::Vec3 const& worldPoint);
  /** As addForceAtPosition with the point given in the model frame.
   * \param force In newtons, world axes.
   * \param localPoint In the model frame, in metres.
   */
  void addForceAtLocalPosition(zor::Vec3 const& force, zor::Vec3 const& localPoint);
  /** Adds a force at the centre of mass, for the next step only.
   * \param force In newtons, along the axes of the model frame. */
  void addLocalForce(zor::Vec3 const& force);
  /** Adds a torque, for the next step only.
   * \param torque In newton metres, about the axes of the model frame. */
  void addLocalTorque(zor::Vec3 const& torque);
  /** Adds a force at a point, both given in the model frame, for the next step only.
   * \param force In newtons, along the axes of the model frame.
   * \param localPoint In the model frame, in metres.
   */
  void addLocalForceAtLocalPosition(zor::Vec3 const& force, zor::Vec3 const& localPoint);
  /** \return Sum of forces added for the next step, in newtons. */
  zor::Vec3 getForce() const;
  /** \return Sum of torques about the centre of mass added for the next step, in newton metres. */
  zor::Vec3 getTorque() const;
  /** Drops the forces and torques added for the next step. */
  void clearForces();

  /** \return Mass properties, owned by the body. */
  MassProperties* getMassProperties();
  /** \return Mass properties, owned by the body. */
  MassProperties const* getMassProperties() const;
  /** Computes mass, inertia and centre of mass that follow from the shapes again, for example after a change
   * of a material's density. Explicitly set values stay. */
  void updateMassProperties();

  /** Sets how the body moves. Changing to STATIC clears its velocities.
   * \throws std::invalid_argument For a value that is not in the enumeration.
   */
  void setMotionControl(zor::RigidBody::MotionControl control);
  /** \return How the body moves; DYNAMICS by default. */
  zor::RigidBody::MotionControl getMotionControl() const;

  /** Moves a kinematic body to a place: it starts with the next step, keeps its speed and its spin, takes the
   * shorter way round, and stands still when it is there. What it touches feels its motion. Setting a
   * velocity, a place or the motion control gives the move up.
   * \param transform Where the model frame shall come to, in world coordinates.
   * \param duration In s, not negative; less than a time step takes one.
   * \throws std::invalid_argument When the body is not KINEMATICS, the matrix is not a rigid transform or the
   *         duration is not as said.
   */
  void moveTo(zor::AffineMatrix4x4 const& transform, zor::Real duration);
  /** \return Time in s that moveTo still needs; zero when the body is there. */
  zor::Real getMoveTimeLeft() const;

  /** \return The model frame, which follows the body; owned by the body. Use the body's own setters to move
   * it: changes made through the frame are not seen by the simulation. */
  zor::Frame* getFrame();
  /** \return The model frame. */
  zor::Frame const* getFrame() const;

  /** Sets the rate at which the linear velocity decays by itself.
   * \param damping In 1/s, zero or more.
   */
  void setLinearVelocityDamping(zor::Real damping);
  /** \return Linear damping in 1/s; zero by default. */
  zor::Real getLinearVelocityDamping() const;
  /** Sets the rate at which the angular velocity decays by itself.
   * \param damping In 1/s, zero or more.
   */
  void setAngularVelocityDamping(zor::Real damping);
  /** \return Angular damping in 1/s; zero by default. */
  zor::Real getAngularVelocityDamping() const;

  /** Turns the body on or off; when off it neither moves nor collides, and its constraints do nothing. */
  void setEnable(bool enable);
  /** \return Whether the body takes part in the simulation. */
  bool getEnable() const;

  /** Lets the body fall asleep when it rests; takes effect where the simulation's auto-sleep is on too. */
  void setEnableAutoSleep(bool enable);
  /** \return Whether the body may fall asleep; true by default. */
  bool getEnableAutoSleep() const;
  /** \return Whether the body sleeps now. */
  bool isSleeping() const;
  /** Puts the body to sleep until something touches or changes it. */
  void sleep();
  /** Wakes the body. */
  void wakeUp();

  /** Stops a fast body from passing through thin ones.
   * \param enable True to sweep the body along its path in every step.
   */
  void setEnableContinuousCollision(bool enable);
  /** \return Whether the body is swept along its path; false by default. */
  bool getEnableContinuousCollision() const;

  /** \return Momentum in kg m/s. */
  zor::Vec3 getMomentum() const;
  /** \return Angular momentum about the centre of mass in kg m^2/s. */
  zor::Vec3 getAngularMomentum() const;
  /** \return Kinetic energy in joules. */
  zor::Real getKineticEnergy() const;

  /** \return The simulation that the body is in, or null. */
  zorSDK::Simulation* getSimulation() const;

#ifndef SWIG
  zorBullet::BodyImpl& getImpl() const { return *m_impl; }
#endif

protected:
  ~RigidBody() override;

private:
  std::unique_ptr<zorBullet::BodyImpl> m_impl;
};

using RigidBodyRefVector = Vector<ref_ptr<RigidBody>>;

} // namespace zor
