#include "bullet/DynamicsWorld.h"

namespace zorBullet {

void DynamicsWorld::findContacts(double dt) {
  btDispatcherInfo& info = getDispatchInfo();
  info.m_timeStep = dt;
  info.m_stepCount = 0;
  performDiscreteCollisionDetection();
}

void DynamicsWorld::computeMotion(double dt) {
  predictUnconstraintMotion(dt);
  createPredictiveContacts(dt);
  calculateSimulationIslands();
  getSolverInfo().m_timeStep = dt;
  solveConstraints(getSolverInfo());
  integrateTransforms(dt);
  updateActivationState(dt);
}

} // namespace zorBullet
