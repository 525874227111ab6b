#pragma once

#include <zor/BallJoint.h>
#include <zor/RigidBody.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/ref_ptr.h>
#include <zorSDK/GuiEventListener.h>

namespace zorSDK {

/** Drags a rigid body by a spring between a point of it and a point in the world, such as the mouse's. */
class PickHandler : public GuiEventListener {
public:
  /** Creates a handler that holds nothing. */
  PickHandler();

  /** Takes hold of a body, leaving the one held before.
   * \param body Body in the simulation of this listener, not null.
   * \param worldPoint Point of the body to pull at, in metres.
   * \return False when the body does not move by forces or is not in this listener's simulation.
   * \throws std::invalid_argument When the body is null.
   */
  bool grab(zor::RigidBody* body, zor::Vec3 const& worldPoint);
  /** Moves the point that the body is pulled to.
   * \param worldPoint In metres. */
  void moveTo(zor::Vec3 const& worldPoint);
  /** Lets go of the body. */
  void reset();

  /** \return The body held, or null. */
  zor::RigidBody* getPickedBody() const;
  /** \return The point of the body that is pulled, in the world; zero when nothing is held. */
  zor::Vec3 getGrabPoint() const;
  /** \return The point that the body is pulled to, in the world. */
  zor::Vec3 getTarget() const;

  /** Sets how fast the spring pulls.
   * \param frequency Natural frequency in Hz, whatever the body's mass. */
  void setFrequency(zor::Real frequency);
  /** \return Natural frequency in Hz. */
  zor::Real getFrequency() const;

  void removeNotification() override;

protected:
  ~PickHandler() override;

private:
  void applySpring();

  zor::ref_ptr<zor::BallJoint> m_joint;
  zor::Vec3 m_target;
  zor::Real m_frequency = 2.0;
};

} // namespace zorSDK
