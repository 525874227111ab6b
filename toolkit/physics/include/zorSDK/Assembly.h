#pragma once

#include <string>

#include <zor/AffineMatrix4x4.h>
#include <zor/Constraint.h>
#include <zor/Frame.h>
#include <zor/Object.h>
#include <zor/ObserverFrame.h>
#include <zor/RigidBody.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>
#include <zorSDK/EventListener.h>

namespace zorStream {
struct StateAccess;
} // namespace zorStream

namespace zorSDK {

class Assembly;
class Simulation;
class SimulationImpl;

using AssemblyRefVector = zor::Vector<zor::ref_ptr<Assembly>>;

/** A group of simulation objects that is added to, removed from and moved in a simulation as one.
 *
 * Members are held by reference. What is added to or removed from an assembly that is in a simulation enters
 * or leaves that simulation with it. Methods add return false, with a warning, for an object that is already
 * in this assembly, and remove for one that is not; a null object throws std::invalid_argument.
 */
class Assembly : public zor::Object {
public:
  /** \param name Name, used for look-up. */
  explicit Assembly(std::string const& name = "");

  /** Adds a body with its geometries. */
  bool add(zor::RigidBody* body);
  /** Adds a geometry without a body. */
  bool add(zorCollide::Geometry* geometry);
  /** Adds a constraint. */
  bool add(zor::Constraint* constraint);
  /** Adds an observer frame. */
  bool add(zor::ObserverFrame* frame);
  /** Adds a listener. */
  bool add(zorSDK::EventListener* listener);
  /** Nests another assembly in this one.
   * \throws std::invalid_argument Also when the assembly would come to contain itself. */
  bool add(zorSDK::Assembly* assembly);

  /** Removes a body with its geometries. */
  bool remove(zor::RigidBody* body);
  /** Removes a geometry without a body. */
  bool remove(zorCollide::Geometry* geometry);
  /** Removes a constraint. */
  bool remove(zor::Constraint* constraint);
  /** Removes an observer frame. */
  bool remove(zor::ObserverFrame* frame);
  /** Removes a listener. */
  bool remove(zorSDK::EventListener* listener);
  /** Removes an assembly that is nested directly in this one. */
  bool remove(zorSDK::Assembly* assembly);

  /** \return Bodies of this assembly, those of nested ones not included. */
  zor::RigidBodyRefVector const& getRigidBodies() const;
  /** \return Geometries without a body of this assembly. */
  zorCollide::GeometryRefVector const& getGeometries() const;
  /** \return Constraints of this assembly. */
  zor::ConstraintRefVector const& getConstraints() const;
  /** \return Observer frames of this assembly. */
  zor::ObserverFrameRefVector const& getObserverFrames() const;
  /** \return Listeners of this assembly. */
  zorSDK::EventListenerRefVector const& getListeners() const;
  /** \return Assemblies nested directly in this one. */
  zorSDK::AssemblyRefVector const& getAssemblies() const;

  /** Looks a body up by name, also in nested assemblies. Here and below, a name that is not found as it is
   * may be a path: "gripper/finger" is the finger in the nested assembly "gripper".
   * \return The first one, or null. */
  zor::RigidBody* getRigidBody(std::string const& name) const;
  /** Looks a geometry without a body up by name, also in nested assemblies.
   * \return The first one, or null. */
  zorCollide::Geometry* getGeometry(std::string const& name) const;
  /** Looks a constraint up by name, also in nested assemblies.
   * \return The first one, or null. */
  zor::Constraint* getConstraint(std::string const& name) const;
  /** Looks an observer frame up by name, also in nested assemblies.
   * \return The first one, or null. */
  zor::ObserverFrame* getObserverFrame(std::string const& name) const;
  /** Looks a nested assembly up by name, at any depth.
   * \return The first one, or null. */
  zorSDK::Assembly* getAssembly(std::string const& name) const;

  /** Moves the assembly: all bodies and geometries, nested ones included, keep their places relative to it.
   * \param position In world coordinates, in metres. */
  void setPosition(zor::Vec3 const& position);
  /** \return Position of the assembly's frame, in metres. */
  zor::Vec3 getPosition() const;
  /** Turns the assembly about its own origin. */
  void setRotation(zor::Quat const& rotation);
  /** \return Rotation of the assembly's frame. */
  zor::Quat getRotation() const;
  /** Moves and turns the assembly.
   * \throws std::invalid_argument When the matrix is not a rigid transform. */
  void setTransform(zor::AffineMatrix4x4 const& transform);
  /** \return Transform from the assembly's frame to the world. The frame does not follow bodies that move by
   * themselves. */
  zor::AffineMatrix4x4 getTransform() const;
  /** \return The assembly's frame, owned by the assembly. */
  zor::Frame* getFrame();
  /** \return The assembly's frame. */
  zor::Frame const* getFrame() const;

  /** \return The assembly that this one is nested in, or null. */
  zorSDK::Assembly* getParent() const;
  /** \return The simulation that the assembly is in, or null. */
  zorSDK::Simulation* getSimulation() const;

protected:
  ~Assembly() override;

private:
  friend class SimulationImpl;
  friend struct zorStream::StateAccess;
  bool contains(Assembly const* other) const;
  void move(zor::AffineMatrix4x4 const& worldMotion);

  zor::RigidBodyRefVector m_bodies;
  zorCollide::GeometryRefVector m_geometries;
  zor::ConstraintRefVector m_constraints;
  zor::ObserverFrameRefVector m_frames;
  EventListenerRefVector m_listeners;
  AssemblyRefVector m_assemblies;
  zor::ref_ptr<zor::Frame> m_frame;
  Assembly* m_parent = nullptr;
  Simulation* m_simulation = nullptr;
};

} // namespace zorSDK
