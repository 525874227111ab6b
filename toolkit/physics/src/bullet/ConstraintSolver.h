#pragma once

#include <vector>

#include <BulletDynamics/ConstraintSolver/btSequentialImpulseConstraintSolver.h>

namespace zorBullet {

class RowConstraint;

/** The engine's solver, with compliance, start values and results for each row of RowConstraints. */
class ConstraintSolver final : public btSequentialImpulseConstraintSolver {
protected:
  void convertJoints(btTypedConstraint** constraints, int count, btContactSolverInfo const& info) override;
  btScalar solveGroupCacheFriendlyFinish(btCollisionObject** bodies, int numBodies,
                                         btContactSolverInfo const& info) override;

private:
  struct Entry {
    RowConstraint* constraint;
    int firstRow; // in the solver's pool
  };

  void soften(btSolverConstraint& row, double compliance) const;
  void warmStart(btSolverConstraint& row, double impulse);
  void takeResults(Entry const& entry) const;

  std::vector<Entry> m_entries;
};

} // namespace zorBullet
