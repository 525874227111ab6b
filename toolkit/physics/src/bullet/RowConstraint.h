#pragma once

#include <array>

#include <BulletDynamics/ConstraintSolver/btTypedConstraint.h>

namespace zorBullet {

/** One scalar direction in which a constraint acts: J v + compliance * impulse = target. */
struct ConstraintRow {
  btVector3 linear; // of body A; body B gets the opposite
  btVector3 angularA;
  btVector3 angularB;
  double target = 0;     // wanted speed along the row, m/s or rad/s
  double compliance = 0; // speed per impulse
  double lowerImpulse = 0;
  double upperImpulse = 0;
  double* impulse = nullptr; // last impulse: start value of the next solution, then the result
};

/** Where the rows of a constraint come from and their results go. */
class RowSource {
public:
  static constexpr int MAX_ROWS = 16;

  /** Fills the rows for a step. \return number of rows */
  virtual int fillRows(std::array<ConstraintRow, MAX_ROWS>& rows, double dt) = 0;

  /** Gets the impulses (N s, N m s about the centres of mass) that a step put on the bodies. */
  virtual void addReaction(btVector3 const& linearA, btVector3 const& angularA, btVector3 const& linearB,
                           btVector3 const& angularB) = 0;

protected:
  ~RowSource() = default;
};

/**
 * A constraint given by rows. The engine's own joints tell no force of a single row, take no unequal force
 * bounds and start every step from zero impulse; rows of this class have all three with ConstraintSolver.
 */
class RowConstraint final : public btTypedConstraint {
public:
  static constexpr btTypedConstraintType TYPE = MAX_CONSTRAINT_TYPE; // none of the engine's own

  RowConstraint(RowSource& source, btRigidBody& a, btRigidBody& b)
      : btTypedConstraint(TYPE, a, b), m_source(source) {}

  void setTimeStep(double dt) { m_dt = dt; }
  int numRows() const { return m_numRows; }
  ConstraintRow const& row(int index) const { return m_rows[static_cast<size_t>(index)]; }
  RowSource& source() const { return m_source; }

  void getInfo1(btConstraintInfo1* info) override;
  void getInfo2(btConstraintInfo2* info) override;
  void setParam(int, btScalar, int) override {}
  btScalar getParam(int, int) const override { return 0; }

private:
  RowSource& m_source;
  double m_dt = 0;
  int m_numRows = 0;
  std::array<ConstraintRow, RowSource::MAX_ROWS> m_rows;
};

} // namespace zorBullet
