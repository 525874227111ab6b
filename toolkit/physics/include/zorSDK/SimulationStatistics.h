#pragma once

#include <zor/Types.h>

namespace zorSDK {

/** Counts and times of a simulation's last step. */
struct SimulationStatistics {
  /** Steps since the simulation was created or cleaned up. */
  zor::UInt steps = 0;
  /** Bodies in the simulation. */
  zor::UInt bodies = 0;
  /** Bodies that sleep. */
  zor::UInt sleepingBodies = 0;
  /** Constraints in the simulation. */
  zor::UInt constraints = 0;
  /** Pairs of geometries in contact. */
  zor::UInt contacts = 0;
  /** Contact points in all contacts. */
  zor::UInt contactPoints = 0;
  /** Most iterations that the solver did for a group of touching and joined bodies. */
  zor::UInt solverIterations = 0;
  /** Largest change of a relative speed, in m/s or rad/s, in the last iteration of any group: how far the
   * solution still was from being settled. */
  zor::Real solverResidual = 0;
  /** Time of the whole step, listeners included, in s. */
  zor::Real stepTime = 0;
  /** Time of collision detection in s. */
  zor::Real collisionTime = 0;
  /** Time of computing motion in s. */
  zor::Real solverTime = 0;
  /** Time spent in listeners in s. */
  zor::Real listenerTime = 0;
};

} // namespace zorSDK
