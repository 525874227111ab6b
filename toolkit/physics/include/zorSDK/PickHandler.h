#pragma once

#include <zor/BallJoint.h>
#include <zor/RigidBody.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/observer_ptr.h>
#include <zor/ref_ptr.h>
#include <zorSDK/GuiEventListener.h>

namespace zorSDK {

/** Drags a rigid body by a spring between a point of it and a point in the world, such as the mouse's.
 *
 * The spring is damped critically and its force is limited, both in proportion to the body's mass, so that
 * light and heavy bodies follow alike and none is pushed through others. Rotation is damped while the body is
 * held. A body that leaves the simulation is let go of.
 */
class PickHandler : public GuiEventListener {
public:
  /** Creates a handler that holds nothing. */
  PickHandler();

  /** Takes hold of a body, leaving the one held before.
   * \param body Body in the handler's simulation, not null.
   * \param worldPoint Point of the body to pull at, in metres.
   * \return False when the body does not move by forces or is not in the handler's simulation.
   * \throws std::invalid_argument When the body is null.
   */
  bool grab(zor::RigidBody* body, zor::Vec3 const& worldPoint);
  /** Moves the point that the body is pulled to.
   * \param worldPoint In metres. */
  void moveTo(zor::Vec3 const& worldPoint);
  /** Lets go of the body. */
  virtual void reset();

  /** Chooses the simulation whose bodies are taken hold of, and lets go of a body of another.
   * \param simulation Only observed; null for the one that the handler has been added to. */
  virtual void setSimulation(zorSDK::Simulation* simulation);

  /** \return The body held, or null. */
  zor::RigidBody* getPickedBody() const;
  /** \return The point of the body that is pulled, in the world; zero when nothing is held. */
  zor::Vec3 getGrabPoint() const;
  /** \return The point that the body is pulled to, in the world. */
  zor::Vec3 getTarget() const;
  /** \return Force on the body in the last step, in N; zero when nothing is held. */
  zor::Vec3 getForce() const;

  /** Sets how fast the spring pulls.
   * \param frequency Natural frequency in Hz, whatever the body's mass. */
  void setFrequency(zor::Real frequency);
  /** \return Natural frequency in Hz. */
  zor::Real getFrequency() const;

  /** Limits the spring's force along each axis of the world.
   * \param acceleration Force for each kilogram of the body, in N/kg; above zero. Less than gravity does not
   * lift the body. */
  void setForceLimit(zor::Real acceleration);
  /** \return Largest force for each kilogram of the body, in N/kg; 100 by default. */
  zor::Real getForceLimit() const;

  /** Sets how fast the rotation of a held body decays.
   * \param damping In 1/s, zero or more; a body whose own damping is higher keeps that. */
  void setAngularDamping(zor::Real damping);
  /** \return Damping of rotation in 1/s; 4 by default. */
  zor::Real getAngularDamping() const;

  /** Lets go of what is held, as the handler leaves its simulation. */
  void removeNotification() override;

protected:
  ~PickHandler() override;

  /** \return The simulation to pick in, or null. */
  zorSDK::Simulation* findSimulation() const;

private:
  bool isHolding() const;
  void applySpring();
  void dampRotation();
  void restoreRotation();

  zor::observer_ptr<zorSDK::Simulation> m_chosen;
  zor::ref_ptr<zor::BallJoint> m_joint;
  zor::Vec3 m_target;
  zor::Real m_frequency = 2.0;
  zor::Real m_forceLimit = 100.0;
  zor::Real m_angularDamping = 4.0;
  zor::Real m_bodyDamping = 0.0; // of the held body, before it was taken hold of
};

} // namespace zorSDK
