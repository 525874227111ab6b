#include "bullet/ConstraintSolver.h"

#include <algorithm>

#include <BulletCollision/NarrowPhaseCollision/btPersistentManifold.h>
#include <BulletDynamics/Dynamics/btRigidBody.h>

#include "bullet/RowConstraint.h"
#include "bullet/RowSolver.h"

namespace zorBullet {

namespace {

// How bodies that have got into each other come apart.
enum class Parting {
  BY_FORCE,        // with a speed: carries heavy loads, as its impulses start the next step
  WITHOUT_FORCE,   // moved only: after an impact a speed would add energy
  BY_ITS_STIFFNESS // a spring does it
};

// Steps in which what is left of an impact's depth gets too small to matter.
constexpr int SETTLING_STEPS = 20;

Parting partingOf(btPersistentManifold const& manifold) {
  Parting parting = Parting::BY_FORCE;
  for (int i = 0; i < manifold.getNumContacts(); ++i) {
    btManifoldPoint const& point = manifold.getContactPoint(i);
    if (point.m_contactPointFlags & BT_CONTACT_FLAG_CONTACT_STIFFNESS_DAMPING)
      return Parting::BY_ITS_STIFFNESS;
    if (point.m_lifeTime < SETTLING_STEPS || point.m_combinedRestitution > 0)
      parting = Parting::WITHOUT_FORCE;
  }
  return parting;
}

} // namespace

template <class Engine>
btScalar ConstraintSolver<Engine>::solveGroupCacheFriendlySetup(
    btCollisionObject** bodies, int numBodies, btPersistentManifold** manifolds, int numManifolds,
    btTypedConstraint** constraints, int numConstraints, btContactSolverInfo const& info,
    btIDebugDraw* debugDrawer) {
  this->m_cachedSolverMode = info.m_solverMode; // else the engine puts its own functions in
  this->m_resolveSingleConstraintRowGeneric = solveRow;
  this->m_resolveSingleConstraintRowLowerLimit = solveRowWithLowerLimit;
  this->m_resolveSplitPenetrationImpulse = solvePenetration;
  return Engine::solveGroupCacheFriendlySetup(bodies, numBodies, manifolds, numManifolds, constraints,
                                              numConstraints, info, debugDrawer);
}

template <class Engine>
void ConstraintSolver<Engine>::convertContacts(btPersistentManifold** manifolds, int count,
                                               btContactSolverInfo const& info) {
  btContactSolverInfo moved(info), sprung(info);
  moved.m_splitImpulsePenetrationThreshold = 0;
  sprung.m_splitImpulse = 0;
  for (int first = 0; first < count;) {
    Parting const parting = partingOf(*manifolds[first]);
    int next = first + 1;
    while (next < count && partingOf(*manifolds[next]) == parting)
      ++next;
    Engine::convertContacts(manifolds + first, next - first,
                            parting == Parting::BY_FORCE        ? info
                            : parting == Parting::WITHOUT_FORCE ? moved
                                                                : sprung);
    first = next;
  }
  // The engine bounds moments against rolling by their coefficient, as if no impulse were above 1 N s.
  m_rolling.resizeNoInitialize(0);
  m_rolling.copyFromArray(this->m_tmpSolverContactRollingFrictionConstraintPool);
  this->m_tmpSolverContactRollingFrictionConstraintPool.resizeNoInitialize(0);
}

template <class Engine>
btScalar ConstraintSolver<Engine>::solveSingleIteration(int iteration, btCollisionObject** bodies,
                                                        int numBodies, btPersistentManifold** manifolds,
                                                        int numManifolds, btTypedConstraint** constraints,
                                                        int numConstraints, btContactSolverInfo const& info,
                                                        btIDebugDraw* debugDrawer) {
  btScalar residual = Engine::solveSingleIteration(iteration, bodies, numBodies, manifolds, numManifolds,
                                                   constraints, numConstraints, info, debugDrawer);
  for (int i = 0; i < m_rolling.size(); ++i) {
    btSolverConstraint& row = m_rolling[i];
    double const load = this->m_tmpSolverContactConstraintPool[row.m_frictionIndex].m_appliedImpulse;
    row.m_upperLimit = row.m_friction * std::max(load, 0.0);
    row.m_lowerLimit = -row.m_upperLimit;
    btScalar const change = this->resolveSingleConstraintRowGeneric(
        this->m_tmpSolverBodyPool[row.m_solverBodyIdA], this->m_tmpSolverBodyPool[row.m_solverBodyIdB], row);
    residual = std::max(residual, change * change);
  }
  return residual;
}

template <class Engine>
void ConstraintSolver<Engine>::convertJoints(btTypedConstraint** constraints, int count,
                                             btContactSolverInfo const& info) {
  Engine::convertJoints(constraints, count, info);
  m_entries.clear();
  int first = 0;
  for (int i = 0; i < count; ++i) {
    int const rows = this->m_tmpConstraintSizesPool[i].m_numConstraintRows;
    if (rows > 0 && constraints[i]->getConstraintType() == RowConstraint::TYPE) {
      auto* constraint = static_cast<RowConstraint*>(constraints[i]);
      m_entries.push_back({constraint, first});
      for (int r = 0; r < rows; ++r) {
        btSolverConstraint& row = this->m_tmpSolverNonContactConstraintPool[first + r];
        soften(row, constraint->row(r).compliance);
        warmStart(row, *constraint->row(r).impulse * info.m_warmstartingFactor);
      }
    }
    first += rows;
  }
}

// The engine adds compliance beside the row's effective mass, which diverges for soft rows; inside it, the
// iteration converges for every value.
template <class Engine>
void ConstraintSolver<Engine>::soften(btSolverConstraint& row, double compliance) const {
  if (compliance <= 0 || row.m_jacDiagABInv <= 0)
    return;
  double const rigid = 1.0 / row.m_jacDiagABInv;
  double const inverse = 1.0 / (rigid + compliance);
  row.m_rhs *= rigid * inverse;
  row.m_jacDiagABInv = inverse;
  row.m_cfm = compliance * inverse;
}

template <class Engine>
void ConstraintSolver<Engine>::warmStart(btSolverConstraint& row, double impulse) {
  impulse = std::clamp<double>(impulse, row.m_lowerLimit, row.m_upperLimit);
  row.m_appliedImpulse = impulse;
  btSolverBody& a = this->m_tmpSolverBodyPool[row.m_solverBodyIdA];
  btSolverBody& b = this->m_tmpSolverBodyPool[row.m_solverBodyIdB];
  a.internalApplyImpulse(row.m_contactNormal1 * a.internalGetInvMass(), row.m_angularComponentA, impulse);
  b.internalApplyImpulse(row.m_contactNormal2 * b.internalGetInvMass(), row.m_angularComponentB, impulse);
}

template <class Engine>
btScalar ConstraintSolver<Engine>::solveGroupCacheFriendlyIterations(
    btCollisionObject** bodies, int numBodies, btPersistentManifold** manifolds, int numManifolds,
    btTypedConstraint** constraints, int numConstraints, btContactSolverInfo const& info,
    btIDebugDraw* debugDrawer) {
  btScalar const result = Engine::solveGroupCacheFriendlyIterations(
      bodies, numBodies, manifolds, numManifolds, constraints, numConstraints, info, debugDrawer);
  m_report.iterations = std::max(m_report.iterations, this->m_analyticsData.m_numIterationsUsed);
  m_report.squaredSpeed = std::max<double>(m_report.squaredSpeed, this->m_leastSquaresResidual);
  return result;
}

template <class Engine>
btScalar ConstraintSolver<Engine>::solveGroupCacheFriendlyFinish(btCollisionObject** bodies, int numBodies,
                                                                 btContactSolverInfo const& info) {
  for (Entry const& entry : m_entries)
    takeResults(entry);
  m_entries.clear();
  return Engine::solveGroupCacheFriendlyFinish(bodies, numBodies, info);
}

template <class Engine>
void ConstraintSolver<Engine>::takeResults(Entry const& entry) const {
  btVector3 linear(0, 0, 0), angularA(0, 0, 0), angularB(0, 0, 0);
  for (int r = 0; r < entry.constraint->numRows(); ++r) {
    btSolverConstraint const& row = this->m_tmpSolverNonContactConstraintPool[entry.firstRow + r];
    double const impulse = row.m_appliedImpulse;
    *entry.constraint->row(r).impulse = impulse;
    linear += row.m_contactNormal1 * impulse;
    angularA += row.m_relpos1CrossNormal * impulse;
    angularB += row.m_relpos2CrossNormal * impulse;
  }
  entry.constraint->source().addReaction(linear, angularA, -linear, angularB);
}

template class ConstraintSolver<btSequentialImpulseConstraintSolver>;
template class ConstraintSolver<btNNCGConstraintSolver>;

std::unique_ptr<btConstraintSolver> makeSolver(bool conjugateGradient, SolverReport& report) {
  if (conjugateGradient)
    return std::make_unique<ConstraintSolver<btNNCGConstraintSolver>>(report);
  return std::make_unique<ConstraintSolver<btSequentialImpulseConstraintSolver>>(report);
}

} // namespace zorBullet
