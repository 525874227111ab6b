#include <zor/ForceStatistics.h>

#include <algorithm>
#include <cmath>

#include "zor/Checks.h"

namespace zor {

// Welford's recurrence: no loss of digits where the mean is large against the spread.
void ForceStatistics::add(Real value) {
  checkFinite(value, "ForceStatistics::add");
  m_minimum = m_count ? std::min(m_minimum, value) : value;
  m_maximum = m_count ? std::max(m_maximum, value) : value;
  ++m_count;
  Real const off = value - m_mean;
  m_mean += off / static_cast<Real>(m_count);
  m_squares += off * (value - m_mean);
}

void ForceStatistics::clear() {
  *this = ForceStatistics();
}

Real ForceStatistics::getStandardDeviation() const {
  return m_count ? std::sqrt(m_squares / static_cast<Real>(m_count)) : 0;
}

} // namespace zor
