#include "mesh/VertexMerger.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace zorModel {

std::size_t VertexMerger::Hash::operator()(Cell const& cell) const {
  std::uint64_t hash = 0;
  for (double const value : cell) {
    hash ^= std::bit_cast<std::uint64_t>(value + 0.0); // -0 and 0 are equal and must hash alike
    hash *= 0x9E3779B97F4A7C15u;
    hash ^= hash >> 29;
  }
  return hash;
}

// Cells as large as the distance: what is close lies in the same one or in a neighbour.
VertexMerger::Cell VertexMerger::cellOf(zor::Vec3 const& position) const {
  if (!(m_distance > 0))
    return {position.x(), position.y(), position.z()};
  return {std::floor(position.x() / m_distance), std::floor(position.y() / m_distance),
          std::floor(position.z() / m_distance)};
}

zor::UInt32 VertexMerger::find(Cell const& cell, zor::Vec3 const& position) const {
  auto const found = m_cells.find(cell);
  if (found != m_cells.end())
    for (zor::UInt32 const each : found->second)
      if (m_positions[each].distance(position) <= m_distance)
        return each;
  return static_cast<zor::UInt32>(m_positions.size());
}

zor::UInt32 VertexMerger::number(zor::Vec3 const& position) {
  auto const count = static_cast<zor::UInt32>(m_positions.size());
  if (m_distance < 0) {
    m_positions.push_back(position);
    return count;
  }
  Cell const cell = cellOf(position);
  double const reach = m_distance > 0 ? 1 : 0;
  for (double x = -reach; x <= reach; ++x)
    for (double y = -reach; y <= reach; ++y)
      for (double z = -reach; z <= reach; ++z)
        if (zor::UInt32 const near = find({cell[0] + x, cell[1] + y, cell[2] + z}, position); near < count)
          return near;
  m_cells[cell].push_back(count);
  m_positions.push_back(position);
  return count;
}

} // namespace zorModel
