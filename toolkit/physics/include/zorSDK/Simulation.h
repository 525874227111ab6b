#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <zor/Constraint.h>
#include <zor/Constraint1DOF.h>
#include <zor/ContactMaterial.h>
#include <zor/EmitterBase.h>
#include <zor/Material.h>
#include <zor/Object.h>
#include <zor/ObserverFrame.h>
#include <zor/ParticleSystem.h>
#include <zor/RigidBody.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/Space.h>
#include <zorSDK/Assembly.h>
#include <zorSDK/EventListener.h>
#include <zorSDK/SimulationStatistics.h>

namespace zorSDK {

class SimulationImpl;

/** A world of bodies, geometries and constraints that advances in fixed time steps.
 *
 * Every step: emitters, PRE_COLLIDE listeners, collision detection, contact listeners, PRE_STEP listeners,
 * motion, POST_STEP listeners, LAST_STEP listeners. The integration is semi-implicit: a free body's velocity
 * advances first, its position with the new velocity.
 *
 * Methods add hold a reference to the object. They return false, with a warning, for an object that is
 * already in this or another simulation; remove returns false for one that is not in this simulation. Null
 * throws std::invalid_argument. Objects may be added and removed inside listeners.
 */
class Simulation : public zor::Object {
public:
  /** What read takes from a file (bit mask). */
  enum ReadSelection : int {
    READ_OBJECTS = 1,   /**< Bodies, geometries, constraints, frames, assemblies, particle systems
                           and emitters. */
    READ_TIME = 2,      /**< The simulated time. */
    READ_SETTINGS = 4,  /**< Name, gravity, time step, sub-steps, solver, sleeping and disabled groups. */
    READ_MATERIALS = 8, /**< Materials that are found by name, and contact materials. */
    READ_ALL = 15       /**< All of them. */
  };

  /** Creates an empty simulation at time zero, gravity (0, 0, -9.81) m/s^2 and a time step of 1/60 s. */
  Simulation();

  /** How the solver finds the forces of contacts and constraints. */
  enum SolverType : int {
    SEQUENTIAL_IMPULSES = 0, /**< One after the other, over and over (projected Gauss-Seidel). */
    CONJUGATE_GRADIENT = 1   /**< The same sped up by a non-smooth conjugate gradient: settles long chains and
                                high stacks in fewer iterations, each of which costs more. */
  };

  /** Adds a body with its geometries. */
  bool add(zor::RigidBody* body);
  /** Adds a geometry without a body; it stands still but collides. */
  bool add(zorCollide::Geometry* geometry);
  /** Adds a constraint. Its bodies may be added before or after it; it acts once they are in.
   * \return False also when a body is in another simulation. */
  bool add(zor::Constraint* constraint);
  /** Adds a material, which makes it found by name; geometries use theirs in any case. */
  bool add(zor::Material* material);
  /** Adds a contact material: it takes effect where its two materials meet. */
  bool add(zor::ContactMaterial* contactMaterial);
  /** Adds an observer frame. */
  bool add(zor::ObserverFrame* frame);
  /** Adds a particle system: from the next step on its particles move. */
  bool add(zor::ParticleSystem* particles);
  /** Adds an emitter: it emits at the start of every step. */
  bool add(zor::EmitterBase* emitter);
  /** Adds an assembly with everything in it. */
  bool add(zorSDK::Assembly* assembly);
  /** Adds a listener and calls its addNotification. */
  bool add(zorSDK::EventListener* listener);

  /** Removes a body with its geometries. Its constraints stay and wait for it. */
  bool remove(zor::RigidBody* body);
  /** Removes a geometry that was added by itself. */
  bool remove(zorCollide::Geometry* geometry);
  /** Removes a constraint. */
  bool remove(zor::Constraint* constraint);
  /** Removes a material from those that are found by name. */
  bool remove(zor::Material* material);
  /** Removes a contact material; its materials meet by their own values then. */
  bool remove(zor::ContactMaterial* contactMaterial);
  /** Removes an observer frame. */
  bool remove(zor::ObserverFrame* frame);
  /** Removes a particle system. */
  bool remove(zor::ParticleSystem* particles);
  /** Removes an emitter. */
  bool remove(zor::EmitterBase* emitter);
  /** Removes an assembly with everything in it. */
  bool remove(zorSDK::Assembly* assembly);
  /** Calls the listener's removeNotification and removes it. */
  bool remove(zorSDK::EventListener* listener);

  /** Advances by one time step.
   * \throws std::runtime_error When called inside a step. What a listener throws comes through; the step then
   *         ends where it was and the simulation can go on.
   */
  void stepForward();
  /** Advances in whole time steps while the next one does not lie beyond a time.
   * \param time In s; a time in the past does nothing.
   * \return Number of steps done.
   * \throws std::invalid_argument When the time is not finite, more than 10⁹ steps away, or so late that a
   *         step doesn't change it.
   */
  zor::UInt stepTo(zor::Real time);

  /** Sets the time step.
   * \param dt In s, larger than zero and finite.
   * \throws std::invalid_argument When it is not.
   */
  void setTimeStep(zor::Real dt);
  /** \return Time step in s. */
  zor::Real getTimeStep() const;
  /** Sets the simulated time, for example to start again at zero.
   * \param time In s, finite. */
  void setTimeStamp(zor::TimeStamp time);
  /** \return Simulated time in s. */
  zor::TimeStamp getTimeStamp() const;

  /** Divides the computation of motion of every step into equal parts: more accurate and stiffer joints at
   * proportional cost. Listeners are called once a step whatever the number.
   * \param count 1 to 100.
   */
  void setNumSubSteps(zor::UInt count);
  /** \return Parts of a step; 1 by default. */
  zor::UInt getNumSubSteps() const;
  /** Sets how often the solver goes over all contacts and constraints in a step. Heavy bodies on light ones
   * and long chains want more.
   * \param count 1 to 10000.
   */
  void setNumSolverIterations(zor::UInt count);
  /** \return Solver iterations. */
  zor::UInt getNumSolverIterations() const;

  /** Ends the solver's iterations early where nothing changes any more.
   * \param tolerance Change of relative speed in one iteration, in m/s or rad/s, at or below which a group of
   *        bodies counts as solved; not negative. Zero, the default, always does all iterations.
   * \throws std::invalid_argument When it is not as said.
   */
  void setSolverTolerance(zor::Real tolerance);
  /** \return Change of speed in m/s or rad/s that ends the iterations. */
  zor::Real getSolverTolerance() const;
  /** Chooses the solver.
   * \throws std::invalid_argument For a value that is not in the enumeration.
   * \throws std::runtime_error When called inside a step. */
  void setSolverType(zorSDK::Simulation::SolverType type);
  /** \return The solver; SEQUENTIAL_IMPULSES by default. */
  zorSDK::Simulation::SolverType getSolverType() const;

  /** Sets the same gravity everywhere.
   * \param gravity In m/s^2. */
  void setUniformGravity(zor::Vec3 const& gravity);
  /** \return Gravity in m/s^2. */
  zor::Vec3 getUniformGravity() const;

  /** Lets bodies at rest fall asleep, which saves time.
   * \param enable Off by default. */
  void setEnableAutoSleep(bool enable);
  /** \return Whether bodies at rest fall asleep. */
  bool getEnableAutoSleep() const;

  /** \return The collision space, owned by the simulation. */
  zorCollide::Space* getSpace() const;

  /** \return All bodies, those of assemblies included, in order of addition. */
  zor::RigidBodyRefVector const& getRigidBodies() const;
  /** \return All geometries, those of bodies included. */
  zorCollide::GeometryRefVector const& getGeometries() const;
  /** \return All constraints, those of assemblies included. */
  zor::ConstraintRefVector const& getConstraints() const;
  /** \return Materials that were added. */
  zor::Vector<zor::ref_ptr<zor::Material>> const& getMaterials() const;
  /** \return Contact materials that were added. */
  zor::Vector<zor::ref_ptr<zor::ContactMaterial>> const& getContactMaterials() const;
  /** \return All observer frames, those of assemblies included. */
  zor::ObserverFrameRefVector const& getObserverFrames() const;
  /** \return All particle systems in order of addition. */
  zor::ParticleSystemRefVector const& getParticleSystems() const;
  /** \return All emitters in order of addition. */
  zor::EmitterRefVector const& getEmitters() const;
  /** \return Assemblies that were added, those nested in others not included. */
  zorSDK::AssemblyRefVector const& getAssemblies() const;
  /** \return All listeners in order of addition, those of assemblies included. */
  zorSDK::EventListenerRefVector const& getListeners() const;

  /** \return The first body of the given name, or null. Here and below, a name that is not found as it is may
   * be a path through assemblies, such as "arm/gripper/finger". */
  zor::RigidBody* getRigidBody(std::string const& name) const;
  /** \return The first geometry of the given name, or null. */
  zorCollide::Geometry* getGeometry(std::string const& name) const;
  /** \return The first constraint of the given name, or null. */
  zor::Constraint* getConstraint(std::string const& name) const;
  /** \return The first constraint with one degree of freedom of the given name, or null. */
  zor::Constraint1DOF* getConstraint1DOF(std::string const& name) const;
  /** \return The first added material of the given name, or null. */
  zor::Material* getMaterial(std::string const& name) const;
  /** \return The added contact material of two materials, in any order, or null. */
  zor::ContactMaterial* getContactMaterial(zor::Material const* material1,
                                           zor::Material const* material2) const;
  /** \return The first observer frame of the given name, or null. */
  zor::ObserverFrame* getObserverFrame(std::string const& name) const;
  /** \return The first particle system of the given name, or null. */
  zor::ParticleSystem* getParticleSystem(std::string const& name) const;
  /** \return The first particle system, or null. */
  zor::ParticleSystem* getParticleSystem() const;
  /** \return The first emitter of the given name, or null. */
  zor::EmitterBase* getEmitter(std::string const& name) const;
  /** \return The first assembly of the given name, at any depth, or null. */
  zorSDK::Assembly* getAssembly(std::string const& name) const;
  /** \return The first listener of the given name, or null. */
  zorSDK::EventListener* getEventListener(std::string const& name) const;

  /** Tells where everything is, to the last bit: the same script gives the same numbers in every run.
   * \return Time stamp; then for each body, in order of addition, 14 numbers: position (3) and rotation (4)
   * of the model frame, velocity (3), angular velocity (3), and 1 when it sleeps, else 0; then for each
   * particle system the number of its particles, and as many numbers for each of them, the last of which is 0
   * when it takes no part, else 1. */
  zor::RealVector getState() const;
  /** \return A 64-bit number made from all bits of getState: equal states have equal ones, and others almost
   *         certainly not. */
  zor::UInt getStateHash() const;

  /** \return Counts and times of the last step. */
  zorSDK::SimulationStatistics getStatistics() const;

  /** Stores everything that is in the simulation, its settings and what the engine remembers from step to
   * step, so that a simulation that reads it goes on bit for bit. Listeners are not stored; a warning counts
   * them. A PickHandler is a listener, but the spring by which it holds a body is a constraint, and stored.
   *
   * The file is written beside its place and put there at the end: a file of the same name is replaced by a
   * whole one, or stays. Call it between steps, or in a post or last step listener.
   * \param filename - name that ends with ".zor" (binary) or ".azor" (JSON, to be read and edited by people)
   * \throws std::invalid_argument When the name ends otherwise.
   * \throws std::runtime_error That names the file, when it can't be written.
   */
  void write(zor::String const& filename) const;
  /** Adds what a file holds. Into an empty simulation, it goes on bit for bit as the stored one did.
   * \param filename - a file that write has written, of either kind
   * \param parent - assembly that gets what is in no assembly of its own; added to this simulation if it is
   * in none. Null for none. Particle systems and emitters are in no assembly
   * \param selection - combination of ReadSelection
   * \throws std::invalid_argument When the parent is in another simulation or the selection has unknown bits.
   * \throws std::runtime_error That names the file and the place in it, when it can't be read, is damaged or
   * of a newer version; the simulation is then as it was. Also when called inside a step.
   */
  void read(zor::String const& filename, zorSDK::Assembly* parent = nullptr, zor::UInt selection = READ_ALL);
  /** As write, into memory.
   * \param json - true for the bytes of a ".azor" file, in place of those of a ".zor" file
   * \return the bytes */
  std::string toBytes(bool json = false) const;
  /** As read, from memory.
   * \param bytes - what write or toBytes has made, of either kind
   * \param parent - as for read
   * \param selection - as for read
   */
  void fromBytes(std::string_view bytes, zorSDK::Assembly* parent = nullptr, zor::UInt selection = READ_ALL);

  /** Removes everything and sets the time back to zero; settings stay. Listeners are notified. */
  void cleanup();

protected:
  ~Simulation() override;

private:
  friend class Assembly; // enters and leaves nested ones
  friend struct zorStream::StateAccess;
  void readBytes(std::string_view bytes, zorSDK::Assembly* parent, zor::UInt selection,
                 std::string const& source);
  std::unique_ptr<SimulationImpl> m_impl;
};

} // namespace zorSDK
