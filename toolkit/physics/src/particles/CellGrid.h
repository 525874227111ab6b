#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <zor/Vec3.h>

namespace zorParticles {

/**
 * Sorts points into cubic cells. Cells that lie next to each other along the last axis follow each other, and
 * the first axis is the longest, so that it can be cut into slabs.
 *
 * Where a few points lie far away, the grid repeats itself along that axis: points far from each other then
 * share cells, which costs time and no correctness.
 */
class CellGrid {
public:
  /** A range of the sorted points. */
  struct Range {
    uint32_t begin, end;
  };

  /** A cell by its place along the first, middle and last axis of the grid. */
  struct Cell {
    int first, middle, last;
  };

  /**
   * \param points - finite
   * \param chosen - indices of those to sort
   * \param cellSize - edge of a cell, larger than zero
   */
  void sort(zor::Vec3 const* points, std::vector<uint32_t> const& chosen, double cellSize);

  /** Indices of the points, cell by cell, in each cell ascending. */
  std::vector<uint32_t> const& order() const { return m_order; }

  int count(int axis) const { return m_counts[static_cast<size_t>(axis)]; }
  /** Axis of space (0 to 2) of the grid's first, middle or last axis. */
  int spaceAxis(int axis) const { return m_axes[static_cast<size_t>(axis)]; }
  bool repeats(int axis) const { return m_repeats[static_cast<size_t>(axis)]; }

  Range cell(Cell const& at) const { return {m_starts[index(at)], m_starts[index(at) + 1]}; }
  /** The points of a layer across the first axis. */
  Range layer(int first) const { return {layerStart(first), layerStart(first + 1)}; }
  uint32_t layerStart(int first) const { return m_starts[static_cast<size_t>(first) * m_layerSize]; }
  Range row(int first, int middle) const {
    size_t const start = index({first, middle, 0});
    return {m_starts[start], m_starts[start + static_cast<size_t>(m_counts[2])]};
  }

  /**
   * The half of a cell's surroundings that comes after it: each pair of cells is found from one of the two.
   * \param ranges - gets the points of the neighbours in the same layer (but not those of the cell itself)
   * \param nextLayer - gets those in the next layer
   */
  typedef std::array<Range, 10> Ranges;
  size_t neighboursInLayer(Cell const& at, Ranges& ranges) const;
  size_t neighboursInNextLayer(Cell const& at, Ranges& ranges) const;

  /** Cells along a grid axis that an interval of space meets; everything where the grid repeats itself. */
  void span(int axis, double lower, double upper, int& begin, int& end) const;

private:
  size_t index(Cell const& at) const {
    return static_cast<size_t>(at.first) * m_layerSize +
           static_cast<size_t>(at.middle) * static_cast<size_t>(m_counts[2]) + static_cast<size_t>(at.last);
  }
  void layOut(zor::Vec3 const& lower, zor::Vec3 const& upper, size_t numPoints);
  int place(int axis, double coordinate) const;
  size_t addRow(int first, int middle, int last, Ranges& ranges, size_t count) const;

  double m_cellSize = 1;
  zor::Vec3 m_lower;
  std::array<int, 3> m_axes{0, 1, 2};
  std::array<int, 3> m_counts{1, 1, 1};
  std::array<bool, 3> m_repeats{};
  size_t m_layerSize = 1;
  std::vector<uint32_t> m_cellOf; // of each chosen point
  std::vector<uint32_t> m_starts;
  std::vector<uint32_t> m_order;
};

} // namespace zorParticles
