#pragma once

#include <LinearMath/btScalar.h>

class btSolverBody;
struct btSolverConstraint;

namespace zorBullet {

// One row of the engine's solver, as its own functions do it, two numbers at a time: the engine does so only
// in single precision. Nine tenths of a step of a large pile are spent here. Bodies have no factors for
// single axes, which the toolkit does not offer. Each returns the change of relative speed.

btScalar solveRow(btSolverBody& a, btSolverBody& b, btSolverConstraint const& row);
btScalar solveRowWithLowerLimit(btSolverBody& a, btSolverBody& b, btSolverConstraint const& row);
/** Only places, not speeds. */
btScalar solvePenetration(btSolverBody& a, btSolverBody& b, btSolverConstraint const& row);

} // namespace zorBullet
