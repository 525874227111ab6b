#pragma once

#include <zor/Types.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <stdexcept>

namespace zor {

/** Closed interval of real numbers. */
class RangeReal {
public:
  /** All real numbers. */
  RangeReal() = default;

  /** The interval from -limit to limit. \throws std::invalid_argument if limit is negative or not a number */
  explicit RangeReal(Real limit) : RangeReal(-limit, limit) {}

  /** The interval between two numbers. \throws std::invalid_argument if lower is above upper or one is not a
   * number */
  RangeReal(Real lower, Real upper) : m_lower(lower), m_upper(upper) {
    if (!(lower <= upper)) {
      throw std::invalid_argument("range from " + std::to_string(lower) + " to " + std::to_string(upper) +
                                  " is no range: the lower end must not be above the upper end");
    }
  }

  /** \return the lower end; -infinity by default */
  Real lower() const { return m_lower; }
  /** \return the upper end; infinity by default */
  Real upper() const { return m_upper; }

  /** Sets the lower end. \throws std::invalid_argument if it is above the upper end */
  void setLower(Real lower) { *this = RangeReal(lower, m_upper); }

  /** Sets the upper end. \throws std::invalid_argument if it is below the lower end */
  void setUpper(Real upper) { *this = RangeReal(m_lower, upper); }

  /** \return the distance of the ends */
  Real length() const { return m_upper - m_lower; }

  /** \return true if value lies in the interval, ends included */
  bool contains(Real value) const { return m_lower <= value && value <= m_upper; }

  /** \return the value of the interval that is nearest to value */
  Real clamp(Real value) const { return std::clamp(value, m_lower, m_upper); }

  bool operator==(RangeReal const& other) const {
    return m_lower == other.m_lower && m_upper == other.m_upper;
  }

private:
  Real m_lower = -std::numeric_limits<Real>::infinity();
  Real m_upper = std::numeric_limits<Real>::infinity();
};

inline std::ostream& operator<<(std::ostream& stream, RangeReal const& range) {
  return stream << "[" << range.lower() << ", " << range.upper() << "]";
}

} // namespace zor
