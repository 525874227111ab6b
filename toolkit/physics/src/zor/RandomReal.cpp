#include <zor/RandomReal.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "zor/Checks.h"

namespace zor {

namespace {

constexpr Real WIDEST = 8;       // deviations: farther out there is nothing worth mentioning
constexpr int MOST_DRAWS = 1000; // narrow limits far out

} // namespace

RandomReal::RandomReal(Real value) : m_center(value), m_lower(value), m_upper(value) {
  checkFinite(value, "RandomReal");
}

RandomReal::RandomReal(Kind kind, Real center, Real spread, Real lower, Real upper)
    : m_kind(kind), m_center(center), m_spread(spread), m_lower(lower), m_upper(upper) {
  if (!(lower <= upper) || lower == std::numeric_limits<Real>::infinity())
    throw std::invalid_argument("RandomReal: the limits " + std::to_string(lower) + " and " +
                                std::to_string(upper) + " leave nothing");
  if (kind != UNIFORM && (valueAt(WIDEST) < lower || valueAt(-WIDEST) > upper))
    throw std::invalid_argument("RandomReal: the limits are more than eight deviations away from the mean");
}

RandomReal RandomReal::uniform(Real lower, Real upper) {
  checkFinite(lower, "RandomReal::uniform");
  checkFinite(upper, "RandomReal::uniform");
  return RandomReal(UNIFORM, 0, 0, lower, upper);
}

RandomReal RandomReal::normal(Real mean, Real deviation, Real lower, Real upper) {
  checkFinite(mean, "RandomReal::normal");
  checkNotNegative(deviation, "RandomReal::normal");
  return RandomReal(NORMAL, mean, deviation, lower, upper);
}

RandomReal RandomReal::logNormal(Real mean, Real deviation, Real lower, Real upper) {
  checkPositive(mean, "RandomReal::logNormal");
  checkNotNegative(deviation, "RandomReal::logNormal");
  Real const variance = std::log1p(deviation / mean * (deviation / mean));
  return RandomReal(LOG_NORMAL, std::log(mean) - variance / 2, std::sqrt(variance), std::max(lower, 0.0),
                    upper);
}

Real RandomReal::valueAt(Real normal) const {
  Real const value = m_center + m_spread * normal;
  return m_kind == LOG_NORMAL ? std::exp(value) : value;
}

Real RandomReal::sample(RandomGenerator& generator) const {
  if (m_kind == CONSTANT)
    return m_center;
  if (m_kind == UNIFORM)
    return m_lower + (m_upper - m_lower) * generator.uniform();
  for (int draw = 0; draw < MOST_DRAWS; ++draw) {
    Real const value = valueAt(generator.normal());
    if (value >= m_lower && value <= m_upper)
      return value;
  }
  return std::clamp(valueAt(0), m_lower, m_upper);
}

Real RandomReal::getMoment(UInt power) const {
  if (power < 1 || power > 6)
    throw std::invalid_argument("RandomReal::getMoment: " + std::to_string(power) + " is not 1 to 6");
  auto const raised = [power](Real value) { return std::pow(value, static_cast<Real>(power)); };
  if (m_kind == CONSTANT || m_upper == m_lower)
    return raised(m_lower);
  if (m_kind == UNIFORM)
    return (raised(m_upper) * m_upper - raised(m_lower) * m_lower) /
           (static_cast<Real>(power + 1) * (m_upper - m_lower));
  // Over the normal distribution behind it, cut off at the limits.
  constexpr int STEPS = 20000;
  Real sum = 0, weights = 0;
  for (int i = 0; i < STEPS; ++i) {
    Real const normal = WIDEST * (2 * (i + 0.5) / STEPS - 1), value = valueAt(normal);
    if (value < m_lower || value > m_upper)
      continue;
    Real const weight = std::exp(-normal * normal / 2);
    weights += weight;
    sum += weight * raised(value);
  }
  return weights > 0 ? sum / weights : raised(std::clamp(valueAt(0), m_lower, m_upper));
}

} // namespace zor
