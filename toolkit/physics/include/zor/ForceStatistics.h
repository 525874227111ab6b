#pragma once

#include <zor/Types.h>

namespace zor {

/** Count, extremes, mean and spread of a row of forces, kept up without storing them. */
class ForceStatistics {
public:
  /** Starts without values. */
  ForceStatistics() = default;

  /** Takes a value in.
   * \param value In N or N m, finite.
   * \throws std::invalid_argument When it is not.
   */
  void add(zor::Real value);
  /** Forgets all values. */
  void clear();

  /** \return Number of values. */
  zor::UInt getCount() const { return m_count; }
  /** \return Smallest value; zero without values. */
  zor::Real getMinimum() const { return m_minimum; }
  /** \return Largest value; zero without values. */
  zor::Real getMaximum() const { return m_maximum; }
  /** \return Mean of the values; zero without values. */
  zor::Real getMean() const { return m_mean; }
  /** \return Root of the mean square distance from the mean; zero without values. */
  zor::Real getStandardDeviation() const;

private:
  UInt m_count = 0;
  Real m_minimum = 0;
  Real m_maximum = 0;
  Real m_mean = 0;
  Real m_squares = 0; // sum of squared distances from the mean
};

} // namespace zor
