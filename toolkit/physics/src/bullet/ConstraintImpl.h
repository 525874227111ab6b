#pragma once

#include <array>
#include <memory>
#include <vector>

#include <zor/Constraint.h>
#include <zor/Lock1D.h>
#include <zor/Motor1D.h>
#include <zor/Range1D.h>
#include <zor/RigidBody.h>

#include "bullet/RowConstraint.h"

namespace zorStream {
struct StateAccess;
}

namespace zorBullet {

class SpaceImpl;

/** What a kind of constraint takes away and leaves free, along the axes of the second attachment. */
struct ConstraintKind {
  char const* name;
  int linear;  // how many of the position directions x, y, z are held
  int angular; // how many of the rotations x, y, z are held: 0, 2 or 3; or 1: first x stays square to second
               // z
  enum Freedom { ROTATION, TRANSLATION, DISTANCE, SPIN }; // spin is about the first attachment's x
  std::vector<Freedom> freedoms;                          // those that have controllers
  bool gear = false; // holds the ratio of the rotations about both z axes
};

/** The engine's side of a constraint, and all that the kinds have in common. */
class ConstraintImpl final : public RowSource {
public:
  /** \throws std::invalid_argument When body1 is null or both bodies are the same. */
  ConstraintImpl(ConstraintKind kind, zor::RigidBody* body1, zor::RigidBody* body2);
  ~ConstraintImpl();
  ConstraintImpl(ConstraintImpl const&) = delete;
  ConstraintImpl& operator=(ConstraintImpl const&) = delete;

  /** Frames as given to a constructor; null frames as the constructors of the kinds say. */
  void attach(zor::Frame* frame1, zor::Frame* frame2);
  /** Both attachments at one place in the world. */
  void attachAt(zor::AffineMatrix4x4 const& world);
  void attachLocal(int index, zor::AffineMatrix4x4 const& local);

  zor::RigidBody* body(int index) const { return m_bodies[static_cast<size_t>(index)].get(); }
  zor::Frame* attachment(int index) const { return m_attachments[static_cast<size_t>(index)].get(); }

  struct Freedom {
    ConstraintKind::Freedom kind;
    zor::ref_ptr<zor::Motor1D> motor;
    zor::ref_ptr<zor::Range1D> range;
    zor::ref_ptr<zor::Lock1D> lock;
    double angle = 0; // last position, with full turns for a rotation
    double motorImpulse = 0, lowerImpulse = 0, upperImpulse = 0, lockImpulse = 0;
  };
  Freedom const& freedom(int index) const { return m_freedoms[static_cast<size_t>(index)]; }
  double position(int index) const;
  double speed(int index) const;

  int numHeld() const { return m_kind.linear + m_kind.angular + (m_kind.gear ? 1 : 0); }
  double heldForce(int index) const { return m_heldForce[static_cast<size_t>(index)]; }
  bool reaction(int index, btVector3& force, btVector3& torque) const;
  char const* kindName() const { return m_kind.name; }

  void setEnable(bool enable);
  bool enabled() const { return m_enabled; }
  void setCollisions(bool enable);
  bool collisions() const { return m_collisions; }
  void wake();

  double compliance = 0;
  double damping = 1.0 / 30.0;
  zor::RangeReal forceRange;
  double gearRatio = 1; // turns of the second body for one of the first

  /** Starts anew when it is on. */
  void setStatistics(bool enable);
  bool hasStatistics() const { return m_statistics != nullptr; }
  zor::ForceStatistics forceStatistics() const { return m_statistics ? m_statistics->force : Forces(); }
  zor::ForceStatistics torqueStatistics() const { return m_statistics ? m_statistics->torque : Forces(); }
  zor::ForceStatistics statisticsOf(zor::Controller1D const& controller) const;

  // --- for the simulation

  void enter(zorSDK::Simulation* simulation, SpaceImpl& space);
  void leave();
  zorSDK::Simulation* simulation() const { return m_simulation; }
  /** Puts the constraint into the world or takes it out, as its bodies and settings want it. */
  void update();
  /** Puts the constraint into the world whatever its bodies and settings want. \return the engine's side */
  btTypedConstraint& putIn();
  void takeOut();
  /** The engine's side, or null while the constraint is not in the world. */
  btTypedConstraint* engine() const { return m_engine.get(); }
  void beforeSubStep(double dt);
  void afterSubStep(double dt);

  int fillRows(std::array<ConstraintRow, MAX_ROWS>& rows, double dt) override;
  void addReaction(btVector3 const& linearA, btVector3 const& angularA, btVector3 const& linearB,
                   btVector3 const& angularB) override;

private:
  friend struct zorStream::StateAccess;
  using Forces = zor::ForceStatistics;
  struct Statistics {
    Forces force, torque;                        // on the first body
    std::vector<std::array<Forces, 3>> freedoms; // motor, range, lock
  };

  void addToStatistics();
  struct Pose; // of attachments and centres of mass
  ConstraintRow gearRow(Pose const& pose) const;
  Pose pose() const;
  btTransform attachmentWorld(int index) const;
  double wrappedPosition(Freedom const& freedom, Pose const& pose) const;
  double unwrapped(Freedom const& freedom, double wrapped) const;
  ConstraintRow freedomRow(Freedom const& freedom, Pose const& pose) const;
  ConstraintRow heldRow(int index, Pose const& pose, double& error) const;
  void addControllerRows(Freedom& freedom, Pose const& pose, std::array<ConstraintRow, MAX_ROWS>& rows,
                         int& count, double dt);
  btVector3 turn(Pose const& pose) const;
  bool wanted() const;
  void forgetContacts();
  void clearImpulses();
  btRigidBody& engineBody(int index) const;

  ConstraintKind m_kind;
  std::array<zor::ref_ptr<zor::RigidBody>, 2> m_bodies;
  std::array<zor::ref_ptr<zor::Frame>, 2> m_attachments;
  std::vector<Freedom> m_freedoms;
  bool m_enabled = true;
  bool m_collisions = false;

  std::array<double, 6> m_heldImpulse{};
  std::array<double, 6> m_heldForce{};
  std::array<btVector3, 2> m_force;
  std::array<btVector3, 2> m_torque;
  std::array<btVector3, 2> m_linearImpulse;
  std::array<btVector3, 2> m_angularImpulse;
  double m_gearSlip = 0; // rad that the second body is ahead
  std::unique_ptr<Statistics> m_statistics;
  bool m_acted = false; // in this step
  bool m_known = false; // forces are those of the last step in which the bodies were awake

  zorSDK::Simulation* m_simulation = nullptr;
  SpaceImpl* m_space = nullptr;
  std::unique_ptr<RowConstraint> m_engine; // while in the world
};

} // namespace zorBullet
