#pragma once

#include <string>

#include <zor/AffineMatrix4x4.h>
#include <zor/Frame.h>
#include <zor/Object.h>
#include <zor/Quat.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>

namespace zorSDK {
class Simulation;
class SimulationImpl;
} // namespace zorSDK

namespace zorStream {
struct StateAccess;
} // namespace zorStream

namespace zor {

class RigidBody;

/** A named coordinate system that follows a rigid body, for reading positions and velocities of points of
 * interest. It has no mass and does not collide. */
class ObserverFrame : public Object {
public:
  /** Creates a frame at the world's origin, attached to nothing.
   * \param name Name, used for look-up.
   */
  explicit ObserverFrame(std::string const& name = "");

  /** Creates a frame attached to a body.
   * \param body Body to follow, or null.
   * \param localTransform Transform in the body's model frame.
   * \param name Name, used for look-up.
   */
  ObserverFrame(zor::RigidBody* body, zor::AffineMatrix4x4 const& localTransform,
                std::string const& name = "");

  /** Attaches the frame to a body.
   * \param body Body to follow, not null; a reference is held.
   * \param localTransform Transform in the body's model frame.
   * \throws std::invalid_argument When the body is null.
   */
  void attachWithLocalTransform(zor::RigidBody* body, zor::AffineMatrix4x4 const& localTransform);

  /** Attaches the frame to a body.
   * \param body Body to follow, not null; a reference is held.
   * \param worldTransform Where the frame is now, in world coordinates.
   * \throws std::invalid_argument When the body is null.
   */
  void attachWithWorldTransform(zor::RigidBody* body, zor::AffineMatrix4x4 const& worldTransform);

  /** Leaves the body; the frame stays where it is in the world. */
  void detach();

  /** \return The body that the frame follows, or null. */
  zor::RigidBody* getRigidBody() const;

  /** \return The frame itself, a child of the body's model frame; owned by this object. */
  zor::Frame* getFrame();
  /** \return The frame itself. */
  zor::Frame const* getFrame() const;

  /** \return Position in the world, in metres. */
  zor::Vec3 getPosition() const;
  /** \return Rotation in the world. */
  zor::Quat getRotation() const;
  /** \return Transform from this frame to the world. */
  zor::AffineMatrix4x4 getTransform() const;
  /** \return Transform from this frame to the body's model frame, or to the world when not attached. */
  zor::AffineMatrix4x4 getLocalTransform() const;
  /** Sets the transform from this frame to the body's model frame, or to the world when not attached. */
  void setLocalTransform(zor::AffineMatrix4x4 const& transform);

  /** \return Velocity of the frame's origin in the world, in m/s. */
  zor::Vec3 getVelocity() const;
  /** \return Angular velocity in the world, in rad/s. */
  zor::Vec3 getAngularVelocity() const;

  /** Turns the frame on or off; visuals are created for frames that are on. */
  void setEnable(bool enable);
  /** \return Whether the frame is on. */
  bool getEnable() const;

  /** \return The simulation that the frame is in, or null. */
  zorSDK::Simulation* getSimulation() const;

protected:
  ~ObserverFrame() override;

private:
  friend class zorSDK::SimulationImpl;
  friend struct zorStream::StateAccess;
  ref_ptr<RigidBody> m_body;
  ref_ptr<Frame> m_frame;
  zorSDK::Simulation* m_simulation = nullptr;
  bool m_enabled = true;
};

using ObserverFrameRefVector = Vector<ref_ptr<ObserverFrame>>;

} // namespace zor
