#pragma once

#include <zor/Controller1D.h>

namespace zor {

/** End stops: keeps a degree of freedom inside an interval. */
class Range1D : public Controller1D {
public:
  /** Creates a disabled range without bounds. Constraints make their own. */
  Range1D();

  /** Sets the interval.
   * \param range In m or rad; infinite bounds leave that side free; lower not above upper.
   * \throws std::invalid_argument When a bound is NaN or the lower lies above the upper.
   */
  void setRange(zor::RangeReal const& range);
  /** As setRange with the bounds given one by one. */
  void setRange(zor::Real lower, zor::Real upper);
  /** \return The interval in m or rad. */
  zor::RangeReal getRange() const;

protected:
  ~Range1D() override;

private:
  RangeReal m_range;
};

} // namespace zor
