#include "zorStream/Checksum.h"

#include <array>

namespace zorStream {

namespace {

constexpr std::uint32_t POLYNOMIAL = 0xEDB88320u; // bits in reverse, as usual

constexpr std::array<std::uint32_t, 256> makeTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t rest = byte;
    for (int bit = 0; bit < 8; ++bit)
      rest = (rest >> 1) ^ (rest & 1u ? POLYNOMIAL : 0u);
    table[byte] = rest;
  }
  return table;
}

} // namespace

std::uint32_t checksum(std::string_view bytes, std::uint32_t before) {
  static constexpr std::array<std::uint32_t, 256> table = makeTable();
  std::uint32_t rest = ~before;
  for (char const c : bytes)
    rest = (rest >> 8) ^ table[(rest ^ static_cast<unsigned char>(c)) & 0xFFu];
  return ~rest;
}

} // namespace zorStream
