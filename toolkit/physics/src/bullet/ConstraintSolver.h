#pragma once

#include <memory>
#include <vector>

#include <BulletDynamics/ConstraintSolver/btNNCGConstraintSolver.h>
#include <BulletDynamics/ConstraintSolver/btSequentialImpulseConstraintSolver.h>

namespace zorBullet {

class RowConstraint;

/** How far the solver came in a step. */
struct SolverReport {
  int iterations = 0;      // most for a group of bodies
  double squaredSpeed = 0; // largest change of a relative speed in the last iteration, squared
};

/** One of the engine's iterative solvers, with compliance, start values and results for each row of
 * RowConstraints, contacts that yield at any depth, and rolling friction of any strength. */
template <class Engine>
class ConstraintSolver final : public Engine {
public:
  explicit ConstraintSolver(SolverReport& report) : m_report(report) {}

protected:
  btScalar solveGroupCacheFriendlySetup(btCollisionObject** bodies, int numBodies,
                                        btPersistentManifold** manifolds, int numManifolds,
                                        btTypedConstraint** constraints, int numConstraints,
                                        btContactSolverInfo const& info, btIDebugDraw* debugDrawer) override;
  void convertContacts(btPersistentManifold** manifolds, int count, btContactSolverInfo const& info) override;
  void convertJoints(btTypedConstraint** constraints, int count, btContactSolverInfo const& info) override;
  btScalar solveSingleIteration(int iteration, btCollisionObject** bodies, int numBodies,
                                btPersistentManifold** manifolds, int numManifolds,
                                btTypedConstraint** constraints, int numConstraints,
                                btContactSolverInfo const& info, btIDebugDraw* debugDrawer) override;
  btScalar solveGroupCacheFriendlyIterations(btCollisionObject** bodies, int numBodies,
                                             btPersistentManifold** manifolds, int numManifolds,
                                             btTypedConstraint** constraints, int numConstraints,
                                             btContactSolverInfo const& info,
                                             btIDebugDraw* debugDrawer) override;
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

  SolverReport& m_report;
  std::vector<Entry> m_entries;
  btConstraintArray m_rolling; // rows against rolling and spinning
};

extern template class ConstraintSolver<btSequentialImpulseConstraintSolver>;
extern template class ConstraintSolver<btNNCGConstraintSolver>;

/** \param conjugateGradient - which of the two \param report - told by every group of bodies */
std::unique_ptr<btConstraintSolver> makeSolver(bool conjugateGradient, SolverReport& report);

} // namespace zorBullet
