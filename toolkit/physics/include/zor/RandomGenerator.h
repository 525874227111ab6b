#pragma once

#include <random>

#include <zor/Types.h>

namespace zorStream {
struct StateAccess;
} // namespace zorStream

namespace zor {

/** Random numbers that are the same for the same seed on every machine. */
class RandomGenerator {
public:
  /** \param seed - equal seeds give equal numbers */
  explicit RandomGenerator(zor::UInt seed = 0) : m_engine(seed) {}

  /** Starts again. \param seed - equal seeds give equal numbers */
  void setSeed(zor::UInt seed);

  /** \return evenly distributed, at least 0 and less than 1 */
  zor::Real uniform();
  /** \return of the normal distribution with mean 0 and standard deviation 1 */
  zor::Real normal();

private:
  friend struct zorStream::StateAccess;

  std::mt19937_64 m_engine; // its numbers are laid down; those of the library's distributions are not
  zor::Real m_spare = 0;
  bool m_hasSpare = false;
};

} // namespace zor
