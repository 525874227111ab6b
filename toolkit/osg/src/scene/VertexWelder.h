#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace zorOSG {

/** Gives equal positions one number. V has x(), y() and z() of a floating-point type. */
template <class V>
class VertexWelder {
public:
  explicit VertexWelder(std::size_t expected) {
    m_numbers.reserve(expected);
    m_positions.reserve(expected);
  }

  unsigned int number(V const& position) {
    auto const [place, isNew] =
        m_numbers.try_emplace(position, static_cast<unsigned int>(m_positions.size()));
    if (isNew)
      m_positions.push_back(position);
    return place->second;
  }

  std::vector<V> const& positions() const { return m_positions; }

private:
  struct Hash {
    std::size_t operator()(V const& v) const {
      std::uint64_t hash = 0;
      for (double const value :
           {static_cast<double>(v.x()), static_cast<double>(v.y()), static_cast<double>(v.z())}) {
        hash ^= std::bit_cast<std::uint64_t>(value + 0.0); // -0 and 0 are equal and must hash alike
        hash *= 0x9E3779B97F4A7C15u;
        hash ^= hash >> 29;
      }
      return hash;
    }
  };

  std::unordered_map<V, unsigned int, Hash> m_numbers;
  std::vector<V> m_positions;
};

} // namespace zorOSG
