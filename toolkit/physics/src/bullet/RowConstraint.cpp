#include "bullet/RowConstraint.h"

namespace zorBullet {

namespace {

void store(btScalar* to, btVector3 const& v) {
  to[0] = v.x();
  to[1] = v.y();
  to[2] = v.z();
}

} // namespace

void RowConstraint::getInfo1(btConstraintInfo1* info) {
  m_numRows = m_source.fillRows(m_rows, m_dt);
  info->m_numConstraintRows = m_numRows;
  info->nub = 0;
}

void RowConstraint::getInfo2(btConstraintInfo2* info) {
  for (int i = 0; i < m_numRows; ++i) {
    ConstraintRow const& row = m_rows[static_cast<size_t>(i)];
    int const at = i * info->rowskip;
    store(info->m_J1linearAxis + at, row.linear);
    store(info->m_J1angularAxis + at, row.angularA);
    store(info->m_J2linearAxis + at, -row.linear);
    store(info->m_J2angularAxis + at, row.angularB);
    info->m_constraintError[at] = row.target;
    info->cfm[at] = 0; // the solver puts compliance in, exactly
    info->m_lowerLimit[at] = row.lowerImpulse;
    info->m_upperLimit[at] = row.upperImpulse;
  }
}

} // namespace zorBullet
