#pragma once

#include <limits>

#include <zor/RandomGenerator.h>
#include <zor/Types.h>

namespace zor {

/** How a number is distributed: always the same, evenly, normally or log-normally, within limits. */
class RandomReal {
public:
  /** The kind of a distribution. */
  enum Kind : int {
    CONSTANT,  ///< Always the same number.
    UNIFORM,   ///< All numbers of an interval alike.
    NORMAL,    ///< Normally distributed, between limits.
    LOG_NORMAL ///< Log-normally distributed, between limits.
  };

  /** Always the same. \param value - finite, else std::invalid_argument */
  explicit RandomReal(zor::Real value = 0);

  /**
   * \param lower - least value, finite
   * \param upper - bound, finite and not less than the least value
   * \return evenly distributed from lower to upper
   */
  static RandomReal uniform(zor::Real lower, zor::Real upper);

  /**
   * \param mean - of the distribution without limits
   * \param deviation - standard deviation, not negative
   * \param lower - values below are drawn again
   * \param upper - values above are drawn again; the limits must leave something within eight deviations
   * \return normally distributed
   */
  static RandomReal normal(zor::Real mean, zor::Real deviation,
                           zor::Real lower = -std::numeric_limits<zor::Real>::infinity(),
                           zor::Real upper = std::numeric_limits<zor::Real>::infinity());

  /**
   * \param mean - of the values (not of their logarithms) without limits, larger than zero
   * \param deviation - standard deviation of the values, not negative
   * \param lower - values below are drawn again
   * \param upper - values above are drawn again; the limits must leave something within eight deviations
   * \return log-normally distributed: sizes of grains often are
   */
  static RandomReal logNormal(zor::Real mean, zor::Real deviation, zor::Real lower = 0,
                              zor::Real upper = std::numeric_limits<zor::Real>::infinity());

  /** \param generator - gives the chance \return a value */
  zor::Real sample(zor::RandomGenerator& generator) const;

  /** \param power - 1 to 6 \return mean of the values to a power, the limits taken into account */
  zor::Real getMoment(zor::UInt power) const;
  /** \return mean of the values, the limits taken into account */
  zor::Real getMean() const { return getMoment(1); }
  /** \return no value is less */
  zor::Real getLower() const { return m_lower; }
  /** \return no value is more */
  zor::Real getUpper() const { return m_upper; }
  /** \return the kind of the distribution */
  Kind getKind() const { return m_kind; }

private:
  friend struct zorStream::StateAccess;

  RandomReal(Kind kind, zor::Real center, zor::Real spread, zor::Real lower, zor::Real upper);
  zor::Real valueAt(zor::Real normal) const;

  Kind m_kind = CONSTANT;
  zor::Real m_center = 0; // of the normal distribution behind it
  zor::Real m_spread = 0;
  zor::Real m_lower = 0;
  zor::Real m_upper = 0;
};

} // namespace zor
