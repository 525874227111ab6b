#pragma once

#include <array>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

namespace zorModel {

/** Numbers vertices so that those that lie close together get one number. */
class VertexMerger {
public:
  /** \param distance - vertices no farther apart become one: the first of them; negative: none do */
  explicit VertexMerger(zor::Real distance) : m_distance(distance) {}

  zor::UInt32 number(zor::Vec3 const& position);

  zor::Vec3Vector const& positions() const { return m_positions; }

private:
  using Cell = std::array<double, 3>;
  struct Hash {
    std::size_t operator()(Cell const& cell) const;
  };

  Cell cellOf(zor::Vec3 const& position) const;
  /** The number of a vertex close by in one cell, or the count of vertices if there is none. */
  zor::UInt32 find(Cell const& cell, zor::Vec3 const& position) const;

  zor::Real m_distance;
  std::unordered_map<Cell, std::vector<zor::UInt32>, Hash> m_cells;
  zor::Vec3Vector m_positions;
};

} // namespace zorModel
