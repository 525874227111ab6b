#include "bullet/RowSolver.h"

#include <BulletDynamics/ConstraintSolver/btSolverBody.h>
#include <BulletDynamics/ConstraintSolver/btSolverConstraint.h>

namespace zorBullet {

namespace {

// x and y of a vector, which the engine aligns to 8 bytes; its fourth number may be anything and is left
// alone.
typedef double Pair __attribute__((vector_size(16), aligned(8), may_alias));

inline Pair& xy(btVector3& v) {
  return *reinterpret_cast<Pair*>(v.m_floats);
}
inline Pair const& xy(btVector3 const& v) {
  return *reinterpret_cast<Pair const*>(v.m_floats);
}

/** Speed along a row that the bodies have gained. */
inline double speedAlong(btSolverConstraint const& row, btVector3 const& linearA, btVector3 const& angularA,
                         btVector3 const& linearB, btVector3 const& angularB) {
  Pair const plane = (xy(row.m_contactNormal1) * xy(linearA) + xy(row.m_relpos1CrossNormal) * xy(angularA)) +
                     (xy(row.m_contactNormal2) * xy(linearB) + xy(row.m_relpos2CrossNormal) * xy(angularB));
  double const up = (row.m_contactNormal1.m_floats[2] * linearA.m_floats[2] +
                     row.m_relpos1CrossNormal.m_floats[2] * angularA.m_floats[2]) +
                    (row.m_contactNormal2.m_floats[2] * linearB.m_floats[2] +
                     row.m_relpos2CrossNormal.m_floats[2] * angularB.m_floats[2]);
  return plane[0] + plane[1] + up;
}

inline void add(btVector3& to, btVector3 const& what, double factor) {
  xy(to) += xy(what) * factor;
  to.m_floats[2] += what.m_floats[2] * factor;
}

inline void add(btVector3& to, btVector3 const& what, btVector3 const& scale, double factor) {
  xy(to) += xy(what) * xy(scale) * factor;
  to.m_floats[2] += what.m_floats[2] * scale.m_floats[2] * factor;
}

inline void apply(btSolverBody& a, btSolverBody& b, btSolverConstraint const& row, double impulse) {
  if (a.m_originalBody) {
    add(a.m_deltaLinearVelocity, row.m_contactNormal1, a.m_invMass, impulse);
    add(a.m_deltaAngularVelocity, row.m_angularComponentA, impulse);
  }
  if (b.m_originalBody) {
    add(b.m_deltaLinearVelocity, row.m_contactNormal2, b.m_invMass, impulse);
    add(b.m_deltaAngularVelocity, row.m_angularComponentB, impulse);
  }
}

inline double wanted(btSolverBody const& a, btSolverBody const& b, btSolverConstraint const& row) {
  double const speed = speedAlong(row, a.m_deltaLinearVelocity, a.m_deltaAngularVelocity,
                                  b.m_deltaLinearVelocity, b.m_deltaAngularVelocity);
  return row.m_rhs - row.m_appliedImpulse * row.m_cfm - speed * row.m_jacDiagABInv;
}

} // namespace

btScalar solveRow(btSolverBody& a, btSolverBody& b, btSolverConstraint const& row) {
  double const before = row.m_appliedImpulse;
  double sum = before + wanted(a, b, row);
  sum = sum < row.m_lowerLimit ? row.m_lowerLimit : sum > row.m_upperLimit ? row.m_upperLimit : sum;
  double const impulse = sum - before;
  row.m_appliedImpulse = sum;
  apply(a, b, row, impulse);
  return impulse / row.m_jacDiagABInv;
}

btScalar solveRowWithLowerLimit(btSolverBody& a, btSolverBody& b, btSolverConstraint const& row) {
  double const before = row.m_appliedImpulse;
  double sum = before + wanted(a, b, row);
  sum = sum < row.m_lowerLimit ? row.m_lowerLimit : sum;
  double const impulse = sum - before;
  row.m_appliedImpulse = sum;
  apply(a, b, row, impulse);
  return impulse / row.m_jacDiagABInv;
}

btScalar solvePenetration(btSolverBody& a, btSolverBody& b, btSolverConstraint const& row) {
  if (row.m_rhsPenetration == 0)
    return 0;
  double const speed =
      speedAlong(row, a.m_pushVelocity, a.m_turnVelocity, b.m_pushVelocity, b.m_turnVelocity);
  double const before = row.m_appliedPushImpulse;
  double sum = before + (row.m_rhsPenetration - before * row.m_cfm - speed * row.m_jacDiagABInv);
  sum = sum < row.m_lowerLimit ? row.m_lowerLimit : sum;
  double const impulse = sum - before;
  row.m_appliedPushImpulse = sum;
  if (a.m_originalBody) {
    add(a.m_pushVelocity, row.m_contactNormal1, a.m_invMass, impulse);
    add(a.m_turnVelocity, row.m_angularComponentA, impulse);
  }
  if (b.m_originalBody) {
    add(b.m_pushVelocity, row.m_contactNormal2, b.m_invMass, impulse);
    add(b.m_turnVelocity, row.m_angularComponentB, impulse);
  }
  return impulse / row.m_jacDiagABInv;
}

} // namespace zorBullet
