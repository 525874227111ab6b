#pragma once

#include "runtime/VectorWatch.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <vector>

struct _object;
typedef _object PyObject;

namespace zorBinding {

// The sequence rules of wrapped standard vectors. They differ from a list's: see readableSlice().

/** Positions that a slice selects; the step may be negative. */
struct SliceRange {
  std::ptrdiff_t start = 0;
  std::ptrdiff_t step = 1;
  std::size_t count = 0;

  std::ptrdiff_t position(std::size_t i) const { return start + static_cast<std::ptrdiff_t>(i) * step; }
};

/**
 * Reads a slice object; a negative start or stop has the size added once.
 * \return 0 always
 * Throws std::runtime_error, with a Python TypeError or OverflowError pending, for a bound that is no integer
 * or too large.
 */
int readSlice(PyObject* slice, std::ptrdiff_t size, std::ptrdiff_t* start, std::ptrdiff_t* stop,
              std::ptrdiff_t* step);

/**
 * \return the positions to read. With a positive step a start outside the vector reads from the beginning.
 * Throws std::invalid_argument "slice step cannot be zero".
 */
SliceRange readableSlice(std::ptrdiff_t start, std::ptrdiff_t stop, std::ptrdiff_t step, std::size_t size);

/** \return the positions to replace or delete. Throws as readableSlice(). */
SliceRange changeableSlice(std::ptrdiff_t start, std::ptrdiff_t stop, std::ptrdiff_t step, std::size_t size);

/** Throws std::invalid_argument if an extended slice is given another number of items than it has. */
void checkSliceSize(std::size_t items, SliceRange const& range);

template <class T>
std::vector<T> slice(std::vector<T> const& vector, SliceRange const& range) {
  std::vector<T> result;
  result.reserve(range.count);
  for (std::size_t i = 0; i < range.count; ++i) {
    result.push_back(vector[static_cast<std::size_t>(range.position(i))]);
  }
  return result;
}

/** Puts other elements, whatever their number, in the place of a range with step 1. */
template <class T>
void replaceRange(std::vector<T>& vector, SliceRange const& range, std::vector<T> const& items) {
  auto const same = static_cast<std::ptrdiff_t>(std::min(range.count, items.size()));
  auto const first = vector.begin() + range.start;
  if (items.size() == range.count) {
    std::copy(items.begin(), items.end(), first);
    return;
  }
  Resizing<T> const resizing(vector);
  std::copy(items.begin(), items.begin() + same, first);
  if (items.size() > range.count) {
    vector.insert(first + same, items.begin() + same, items.end());
  } else {
    vector.erase(first + same, first + static_cast<std::ptrdiff_t>(range.count));
  }
}

template <class T>
void assignSlice(std::vector<T>& vector, SliceRange const& range, std::vector<T> const& items) {
  if (&items == &vector) {
    return assignSlice(vector, range, std::vector<T>(items));
  }
  if (range.step == 1) {
    return replaceRange(vector, range, items);
  }
  checkSliceSize(items.size(), range);
  for (std::size_t i = 0; i < range.count; ++i) {
    vector[static_cast<std::size_t>(range.position(i))] = items[i];
  }
}

template <class T>
void deleteSlice(std::vector<T>& vector, SliceRange range) {
  if (range.count == 0) {
    return;
  }
  if (range.step < 0) {
    range = {range.position(range.count - 1), -range.step, range.count};
  }
  Resizing<T> const resizing(vector);
  auto const first = static_cast<std::size_t>(range.start);
  std::size_t kept = first;
  std::size_t deleted = 0;
  for (std::size_t i = first; i < vector.size(); ++i) {
    if (deleted < range.count && i == static_cast<std::size_t>(range.position(deleted))) {
      ++deleted;
    } else {
      vector[kept++] = vector[i];
    }
  }
  vector.resize(kept);
}

/** Throws std::out_of_range if a position in the vector is its end. */
template <class T>
void checkIsElement(std::vector<T>& vector, typename std::vector<T>::iterator position) {
  if (position == vector.end()) {
    throw std::out_of_range("iterator out of range");
  }
}

/** Throws std::invalid_argument if the second of two positions in a vector comes first. */
template <class T>
void checkOrder(std::vector<T>&, typename std::vector<T>::iterator first,
                typename std::vector<T>::iterator last) {
  if (last < first) {
    throw std::invalid_argument("invalid range");
  }
}

} // namespace zorBinding
