#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <btBulletDynamicsCommon.h>

#include <zor/Frame.h>
#include <zor/RigidBody.h>
#include <zor/ref_ptr.h>

#include "bullet/GeometryImpl.h"
#include "bullet/WorldObject.h"

namespace zorStream {
struct StateAccess;
}

namespace zorBullet {

class SpaceImpl;

/**
 * The engine's side of a rigid body.
 *
 * The engine knows a body only by the frame of its centre of mass with axes along its principal inertia, so
 * the body keeps that frame (m_principal) in its model frame and converts at the boundary.
 */
class BodyImpl final : public GeometryOwner {
public:
  explicit BodyImpl(zor::RigidBody& body);
  ~BodyImpl();
  BodyImpl(BodyImpl const&) = delete;
  BodyImpl& operator=(BodyImpl const&) = delete;

  zor::RigidBody* getBody() override { return &m_body; }
  bool isDynamic() const override { return m_control == zor::RigidBody::DYNAMICS; }
  void onGeometryChanged(GeometryImpl& geometry) override;

  bool addGeometry(zorCollide::Geometry& geometry, zor::AffineMatrix4x4 const& local);
  bool removeGeometry(zorCollide::Geometry& geometry);
  zorCollide::GeometryRefVector const& geometries() const { return m_geometries; }

  void setControl(zor::RigidBody::MotionControl control);
  zor::RigidBody::MotionControl control() const { return m_control; }
  void setEnable(bool enable);
  bool enabled() const { return m_enabled; }
  void setAutoSleep(bool enable);
  bool autoSleep() const { return m_autoSleep; }
  void setContinuous(bool enable);
  bool continuous() const { return m_continuous; }
  void setDamping(double linear, double angular);
  double linearDamping() const { return m_linearDamping; }
  double angularDamping() const { return m_angularDamping; }

  void setModelTransform(btTransform const& transform);
  btTransform modelTransform() const {
    btTransform const& world = m_engine.getWorldTransform();
    return m_principalIsModel ? world : world * m_principalInverse;
  }
  btTransform cmInModel() const;
  void setVelocities(btVector3 const& linear, btVector3 const& angular);
  void moveTo(btTransform const& transform, double duration);
  double moveTimeLeft() const { return m_move ? m_move->left : 0.0; }
  bool movesByForces() const { return m_control == zor::RigidBody::DYNAMICS; }
  void wake();
  void sleep();

  zor::MassProperties& massProperties() { return m_mass; }
  void computeMass(); // automatic values from the shapes, then applyMass
  void applyMass();   // mass properties into the engine

  // --- for the simulation

  void enter(zorSDK::Simulation* simulation, SpaceImpl& space);
  void leave();
  zorSDK::Simulation* simulation() const { return m_simulation; }
  bool inWorld() const { return m_inWorld; }

  void beforeStep(bool autoSleep, double dt);
  void advanceKinematics(double dt);
  void afterStep(double dt);
  /** Takes the engine's pose over into the model frame. \return false when it is not finite; the body then
   * rests where it was. */
  bool synchronise();

  btRigidBody& engine() { return m_engine; }
  btRigidBody const& engine() const { return m_engine; }
  zor::Frame* frame() const { return m_frame.get(); }
  btVector3 const& acceleration() const { return m_acceleration; }
  btVector3 const& angularAcceleration() const { return m_angularAcceleration; }

private:
  friend struct zorStream::StateAccess;
  struct Move {         // of a kinematic body to a place
    btTransform target; // of the model frame
    double left;        // s
  };

  void aimAtTarget(double dt);
  void arriveAtTarget(double dt);
  void rebuildShape();
  void applyFlags();
  void enterWorld();
  void leaveWorld();
  void wakeTouching();
  void sweepRadius();
  MassData shapeMass() const;
  btMatrix3x3 principalAxes(btMatrix3x3& inertia) const;

  zor::RigidBody& m_body;
  zor::ref_ptr<zor::Frame> m_frame;
  btEmptyShape m_noShape;
  btRigidBody m_engine;
  WorldObject m_worldObject;
  zor::MassProperties m_mass;

  zorCollide::GeometryRefVector m_geometries;
  std::vector<std::shared_ptr<LeafSet const>> m_leaves; // in use by the shape
  std::unique_ptr<btCollisionShape> m_shape;            // a compound or nothing
  btTransform m_principal;                              // engine's frame in the model frame
  btTransform m_principalInverse;
  bool m_principalIsModel = true; // the two frames are the same

  zor::RigidBody::MotionControl m_control = zor::RigidBody::DYNAMICS;
  bool m_enabled = true;
  bool m_autoSleep = true;
  bool m_continuous = false;
  double m_linearDamping = 0;
  double m_angularDamping = 0;
  std::optional<Move> m_move;

  zorSDK::Simulation* m_simulation = nullptr;
  SpaceImpl* m_space = nullptr;
  bool m_inWorld = false;
  bool m_wasActive = false; // before the step
  btVector3 m_oldVelocity{0, 0, 0};
  btVector3 m_oldAngularVelocity{0, 0, 0};
  btVector3 m_acceleration{0, 0, 0};
  btVector3 m_angularAcceleration{0, 0, 0};
};

} // namespace zorBullet
