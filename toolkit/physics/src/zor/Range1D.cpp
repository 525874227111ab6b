#include <zor/Range1D.h>

namespace zor {

Range1D::Range1D() = default;

Range1D::~Range1D() = default;

void Range1D::setRange(RangeReal const& range) {
  m_range = range;
  touch();
}

void Range1D::setRange(Real lower, Real upper) {
  setRange(RangeReal(lower, upper));
}

RangeReal Range1D::getRange() const {
  return m_range;
}

} // namespace zor
