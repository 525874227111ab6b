#pragma once

#include <vector>

#include <LinearMath/btAlignedObjectArray.h>
#include <LinearMath/btMatrix3x3.h>

class btRigidBody;

namespace zorBullet {

/**
 * What inertia does to the angular velocities of bodies in a step.
 *
 * Between steps a body's velocity belongs to its pose, so that the two tell its angular momentum. Inside a
 * step the velocity has to carry the body from one pose to the next, and so belongs to the middle of the way:
 * the momentum stays, the pose is half a step ahead and depends on the velocity, which is found by iteration.
 * Impulses of the step then change the momentum at the pose in which they act. A freely spinning body keeps
 * its angular momentum to the last digits and its energy without drift; an explicit gyroscopic torque adds to
 * the energy, and the engine's implicit one takes away from both.
 */
class FreeRotation {
public:
  /** Call before forces act: turns velocities to the middle of the step. */
  void begin(btAlignedObjectArray<btRigidBody*> const& bodies, double dt);

  /** Call when the bodies have their new poses: turns velocities there. */
  void end();

private:
  struct Entry {
    btRigidBody* body;
    btVector3 inertia;  // along the body's axes
    btVector3 momentum; // before the step, body's axes of that time
    btVector3 middle;   // angular velocity in the middle without impulses, same axes
    btMatrix3x3 axes;   // the body's axes of that time
  };

  void begin(btRigidBody& body, double dt);
  static void end(Entry const& entry);

  std::vector<Entry> m_entries;
};

} // namespace zorBullet
