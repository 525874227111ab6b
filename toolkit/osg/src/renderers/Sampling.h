#pragma once

#include <cstdint>

namespace zorOSG {

/**
 * Says whether something with a number of its own belongs to a sample, always the same for the same number.
 * The number's bits are well mixed: neighbours in number, which often are neighbours in space, are chosen
 * apart.
 * \param sampling - part of all that is in the sample, 0 to 1
 */
inline bool isSampled(std::uint64_t number, double sampling) {
  std::uint64_t bits = number + 0x9E3779B97F4A7C15u;
  bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
  bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
  bits ^= bits >> 31;
  return static_cast<double>(bits >> 11) * 0x1p-53 < sampling;
}

} // namespace zorOSG
