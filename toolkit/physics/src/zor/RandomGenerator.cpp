#include <zor/RandomGenerator.h>

#include <cmath>
#include <numbers>

namespace zor {

void RandomGenerator::setSeed(UInt seed) {
  m_engine.seed(seed);
  m_hasSpare = false;
}

Real RandomGenerator::uniform() {
  return static_cast<Real>(m_engine() >> 11) * 0x1p-53;
}

Real RandomGenerator::normal() {
  if (m_hasSpare) {
    m_hasSpare = false;
    return m_spare;
  }
  Real const radius = std::sqrt(-2 * std::log(1 - uniform())); // the argument is never zero
  Real const angle = 2 * std::numbers::pi * uniform();
  m_spare = radius * std::sin(angle);
  m_hasSpare = true;
  return radius * std::cos(angle);
}

} // namespace zor
