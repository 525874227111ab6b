#include "bullet/DynamicsWorld.h"

namespace zorBullet {

void DynamicsWorld::findContacts(double dt) {
  btDispatcherInfo& info = getDispatchInfo();
  info.m_timeStep = dt;
  info.m_stepCount = 0;
  performDiscreteCollisionDetection();
}

void DynamicsWorld::computeMotion(double dt) {
  m_freeRotation.begin(m_nonStaticRigidBodies, dt);
  predictUnconstraintMotion(dt);
  createPredictiveContacts(dt);
  calculateSimulationIslands();
  getSolverInfo().m_timeStep = dt;
  solveConstraints(getSolverInfo());
  integrateTransforms(dt);
  m_freeRotation.end();
  updateActivationState(dt);
}

void DynamicsWorld::removeRigidBody(btRigidBody* body) {
  forgetSwept(*body);
  btDiscreteDynamicsWorld::removeRigidBody(body);
}

void DynamicsWorld::removeCollisionObject(btCollisionObject* object) {
  forgetSwept(*object);
  btDiscreteDynamicsWorld::removeCollisionObject(object);
}

// The engine keeps contacts of swept bodies until the next step, also of bodies that are gone by then.
void DynamicsWorld::forgetSwept(btCollisionObject const& object) {
  for (int i = m_predictiveManifolds.size() - 1; i >= 0; --i) {
    btPersistentManifold* const manifold = m_predictiveManifolds[i];
    if (manifold->getBody0() != &object && manifold->getBody1() != &object)
      continue;
    m_predictiveManifolds.removeAtIndex(i);
    getDispatcher()->releaseManifold(manifold);
  }
}

void DynamicsWorld::arrange(std::vector<btCollisionObject*> const& objects) {
  for (size_t i = 0; i < objects.size(); ++i) {
    m_collisionObjects[static_cast<int>(i)] = objects[i];
    objects[i]->setWorldArrayIndex(static_cast<int>(i));
  }
}

void DynamicsWorld::arrange(std::vector<btRigidBody*> const& moving) {
  m_nonStaticRigidBodies.resizeNoInitialize(0);
  for (btRigidBody* body : moving)
    m_nonStaticRigidBodies.push_back(body);
}

void DynamicsWorld::arrange(std::vector<btTypedConstraint*> const& constraints) {
  m_constraints.resizeNoInitialize(0);
  for (btTypedConstraint* constraint : constraints)
    m_constraints.push_back(constraint);
}

} // namespace zorBullet
