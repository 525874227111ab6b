#include "particles/CellGrid.h"

#include <algorithm>
#include <cmath>

namespace zorParticles {

namespace {

constexpr double CELLS_PER_POINT = 6;
constexpr double FEWEST_CELLS = 4096; // the least limit
constexpr int LEAST_REPEATED = 8;     // neighbours to both sides stay different cells

} // namespace

void CellGrid::sort(zor::Vec3 const* points, std::vector<uint32_t> const& chosen, double cellSize) {
  m_cellSize = cellSize;
  zor::Vec3 lower, upper;
  if (!chosen.empty())
    lower = upper = points[chosen.front()];
  for (uint32_t const i : chosen)
    for (size_t axis = 0; axis < 3; ++axis) {
      lower[axis] = std::min(lower[axis], points[i][axis]);
      upper[axis] = std::max(upper[axis], points[i][axis]);
    }
  layOut(lower, upper, chosen.size());

  m_cellOf.resize(chosen.size());
  m_order.resize(chosen.size());
  m_starts.assign(static_cast<size_t>(m_counts[0]) * m_layerSize + 1, 0);
  for (size_t i = 0; i < chosen.size(); ++i) {
    zor::Vec3 const& point = points[chosen[i]];
    m_cellOf[i] = static_cast<uint32_t>(index({place(0, point[static_cast<size_t>(m_axes[0])]),
                                               place(1, point[static_cast<size_t>(m_axes[1])]),
                                               place(2, point[static_cast<size_t>(m_axes[2])])}));
    ++m_starts[m_cellOf[i] + 1];
  }
  for (size_t cell = 1; cell < m_starts.size(); ++cell)
    m_starts[cell] += m_starts[cell - 1];
  for (size_t i = 0; i < chosen.size(); ++i)
    m_order[m_starts[m_cellOf[i]]++] = chosen[i];
  for (size_t cell = m_starts.size() - 1; cell > 0; --cell) // the starts were moved to the ends
    m_starts[cell] = m_starts[cell - 1];
  m_starts[0] = 0;
}

void CellGrid::layOut(zor::Vec3 const& lower, zor::Vec3 const& upper, size_t numPoints) {
  m_lower = lower;
  std::array<double, 3> needed{};
  for (size_t axis = 0; axis < 3; ++axis)
    needed[axis] = std::floor((upper[axis] - lower[axis]) / m_cellSize) + 1;
  std::array<double, 3> counts = needed;
  double const limit = std::max(FEWEST_CELLS, CELLS_PER_POINT * static_cast<double>(numPoints));
  while (counts[0] * counts[1] * counts[2] > limit) {
    double& most = *std::max_element(counts.begin(), counts.end());
    if (most <= LEAST_REPEATED)
      break;
    // An even number of layers, see the slabs of the solver.
    most = std::max<double>(LEAST_REPEATED, 2 * std::floor(std::min(most, 4 * limit) / 4));
  }
  m_axes = {0, 1, 2};
  std::stable_sort(m_axes.begin(), m_axes.end(), [&](int a, int b) {
    return counts[static_cast<size_t>(a)] > counts[static_cast<size_t>(b)];
  });
  for (size_t i = 0; i < 3; ++i) {
    auto const axis = static_cast<size_t>(m_axes[i]);
    m_counts[i] = static_cast<int>(counts[axis]);
    m_repeats[i] = counts[axis] < needed[axis];
  }
  m_layerSize = static_cast<size_t>(m_counts[1]) * static_cast<size_t>(m_counts[2]);
}

int CellGrid::place(int axis, double coordinate) const {
  auto const a = static_cast<size_t>(axis);
  double const cell = std::floor((coordinate - m_lower[static_cast<size_t>(m_axes[a])]) / m_cellSize);
  double const count = m_counts[a];
  double const within = m_repeats[a] ? cell - count * std::floor(cell / count) : cell;
  // Cells of particles without size are too many to count; then any will do.
  return within >= 0 && within < count ? static_cast<int>(within) : within >= count ? m_counts[a] - 1 : 0;
}

// Up to three cells that follow each other along the last axis, in two parts where the grid repeats itself.
size_t CellGrid::addRow(int first, int middle, int last, Ranges& ranges, size_t count) const {
  size_t const row = index({first, middle, 0});
  auto const add = [&](int begin, int end) {
    Range const range{m_starts[row + static_cast<size_t>(begin)], m_starts[row + static_cast<size_t>(end)]};
    if (range.begin != range.end)
      ranges[count++] = range;
  };
  add(std::max(last - 1, 0), std::min(last + 2, m_counts[2]));
  if (m_repeats[2] && last == 0)
    add(m_counts[2] - 1, m_counts[2]);
  if (m_repeats[2] && last == m_counts[2] - 1)
    add(0, 1);
  return count;
}

size_t CellGrid::neighboursInLayer(Cell const& at, Ranges& ranges) const {
  size_t count = 0;
  int last = at.last + 1;
  if (last == m_counts[2] && m_repeats[2])
    last = 0;
  if (last < m_counts[2]) {
    Range const next = cell({at.first, at.middle, last});
    if (next.begin != next.end)
      ranges[count++] = next;
  }
  int middle = at.middle + 1;
  if (middle == m_counts[1] && m_repeats[1])
    middle = 0;
  return middle < m_counts[1] ? addRow(at.first, middle, at.last, ranges, count) : count;
}

size_t CellGrid::neighboursInNextLayer(Cell const& at, Ranges& ranges) const {
  int first = at.first + 1;
  if (first == m_counts[0]) {
    if (!m_repeats[0])
      return 0;
    first = 0;
  }
  size_t count = 0;
  for (int offset = -1; offset <= 1; ++offset) {
    int middle = at.middle + offset;
    if (middle < 0 || middle >= m_counts[1]) {
      if (!m_repeats[1])
        continue;
      middle = middle < 0 ? m_counts[1] - 1 : 0;
    }
    count = addRow(first, middle, at.last, ranges, count);
  }
  return count;
}

void CellGrid::span(int axis, double lower, double upper, int& begin, int& end) const {
  auto const a = static_cast<size_t>(axis);
  begin = 0;
  end = m_counts[a];
  if (m_repeats[a])
    return;
  double const origin = m_lower[static_cast<size_t>(m_axes[a])], count = m_counts[a];
  begin = static_cast<int>(std::clamp(std::floor((lower - origin) / m_cellSize), 0.0, count));
  end = static_cast<int>(std::clamp(std::floor((upper - origin) / m_cellSize) + 1, 0.0, count));
}

} // namespace zorParticles
