#include "bullet/ConstraintSolver.h"

#include <algorithm>

#include <BulletDynamics/Dynamics/btRigidBody.h>

#include "bullet/RowConstraint.h"

namespace zorBullet {

void ConstraintSolver::convertJoints(btTypedConstraint** constraints, int count,
                                     btContactSolverInfo const& info) {
  btSequentialImpulseConstraintSolver::convertJoints(constraints, count, info);
  m_entries.clear();
  int first = 0;
  for (int i = 0; i < count; ++i) {
    int const rows = m_tmpConstraintSizesPool[i].m_numConstraintRows;
    if (rows > 0 && constraints[i]->getConstraintType() == RowConstraint::TYPE) {
      auto* constraint = static_cast<RowConstraint*>(constraints[i]);
      m_entries.push_back({constraint, first});
      for (int r = 0; r < rows; ++r) {
        btSolverConstraint& row = m_tmpSolverNonContactConstraintPool[first + r];
        soften(row, constraint->row(r).compliance);
        warmStart(row, *constraint->row(r).impulse * info.m_warmstartingFactor);
      }
    }
    first += rows;
  }
}

// The engine adds compliance beside the row's effective mass, which diverges for soft rows; inside it, the
// iteration converges for every value.
void ConstraintSolver::soften(btSolverConstraint& row, double compliance) const {
  if (compliance <= 0 || row.m_jacDiagABInv <= 0)
    return;
  double const rigid = 1.0 / row.m_jacDiagABInv;
  double const inverse = 1.0 / (rigid + compliance);
  row.m_rhs *= rigid * inverse;
  row.m_jacDiagABInv = inverse;
  row.m_cfm = compliance * inverse;
}

void ConstraintSolver::warmStart(btSolverConstraint& row, double impulse) {
  impulse = std::clamp<double>(impulse, row.m_lowerLimit, row.m_upperLimit);
  row.m_appliedImpulse = impulse;
  btSolverBody& a = m_tmpSolverBodyPool[row.m_solverBodyIdA];
  btSolverBody& b = m_tmpSolverBodyPool[row.m_solverBodyIdB];
  a.internalApplyImpulse(row.m_contactNormal1 * a.internalGetInvMass(), row.m_angularComponentA, impulse);
  b.internalApplyImpulse(row.m_contactNormal2 * b.internalGetInvMass(), row.m_angularComponentB, impulse);
}

btScalar ConstraintSolver::solveGroupCacheFriendlyFinish(btCollisionObject** bodies, int numBodies,
                                                         btContactSolverInfo const& info) {
  for (Entry const& entry : m_entries)
    takeResults(entry);
  m_entries.clear();
  return btSequentialImpulseConstraintSolver::solveGroupCacheFriendlyFinish(bodies, numBodies, info);
}

void ConstraintSolver::takeResults(Entry const& entry) const {
  btVector3 linear(0, 0, 0), angularA(0, 0, 0), angularB(0, 0, 0);
  for (int r = 0; r < entry.constraint->numRows(); ++r) {
    btSolverConstraint const& row = m_tmpSolverNonContactConstraintPool[entry.firstRow + r];
    double const impulse = row.m_appliedImpulse;
    *entry.constraint->row(r).impulse = impulse;
    linear += row.m_contactNormal1 * impulse;
    angularA += row.m_relpos1CrossNormal * impulse;
    angularB += row.m_relpos2CrossNormal * impulse;
  }
  entry.constraint->source().addReaction(linear, angularA, -linear, angularB);
}

} // namespace zorBullet
