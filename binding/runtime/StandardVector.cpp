#include <Python.h>

#include "runtime/StandardVector.h"

#include <string>

namespace zorBinding {

namespace {

// PySlice_GetIndices() leaves bounds unset that are no int, such as numpy's integers.
bool hasPlainBounds(PySliceObject const& slice) {
  return std::ranges::all_of(std::initializer_list<PyObject*>{slice.start, slice.stop, slice.step},
                             [](PyObject* bound) { return bound == Py_None || PyLong_Check(bound); });
}

PyObject* plainBound(PyObject* bound) {
  return bound == Py_None ? Py_NewRef(bound) : PyNumber_Index(bound);
}

PyObject* withPlainBounds(PySliceObject const& slice) {
  PyObject* const start = plainBound(slice.start);
  PyObject* const stop = start ? plainBound(slice.stop) : nullptr;
  PyObject* const step = stop ? plainBound(slice.step) : nullptr;
  PyObject* const result = step ? PySlice_New(start, stop, step) : nullptr;
  Py_XDECREF(start);
  Py_XDECREF(stop);
  Py_XDECREF(step);
  return result;
}

// Bounds of a slice that counts down lie in -1 .. size - 1.
SliceRange downward(std::ptrdiff_t start, std::ptrdiff_t stop, std::ptrdiff_t step, std::ptrdiff_t size) {
  std::ptrdiff_t const first = std::min(std::max<std::ptrdiff_t>(start, -1), size - 1);
  std::ptrdiff_t const last = std::min(std::max<std::ptrdiff_t>(stop, -1), size - 1);
  std::size_t const stride = std::size_t(0) - static_cast<std::size_t>(step); // of the smallest step, too
  std::size_t const count = first > last ? (static_cast<std::size_t>(first - last) - 1) / stride + 1 : 0;
  return {std::max(first, last), step, count};
}

SliceRange upward(std::ptrdiff_t start, std::ptrdiff_t stop, std::ptrdiff_t step, std::ptrdiff_t size) {
  std::ptrdiff_t const last = std::max(std::clamp<std::ptrdiff_t>(stop, 0, size), start);
  return {start, step, last > start ? static_cast<std::size_t>((last - start - 1) / step + 1) : 0};
}

void checkStep(std::ptrdiff_t step) {
  if (step == 0) {
    throw std::invalid_argument("slice step cannot be zero");
  }
}

} // namespace

int readSlice(PyObject* slice, std::ptrdiff_t size, std::ptrdiff_t* start, std::ptrdiff_t* stop,
              std::ptrdiff_t* step) {
  *start = *stop = *step = 0;
  auto const& bounds = *reinterpret_cast<PySliceObject*>(slice);
  PyObject* const plain = hasPlainBounds(bounds) ? Py_NewRef(slice) : withPlainBounds(bounds);
  if (plain) {
    PySlice_GetIndices(plain, size, start, stop, step); // its own verdict on the range does not count
    Py_DECREF(plain);
  }
  if (PyErr_Occurred()) {
    throw std::runtime_error("the Python error says what is wrong");
  }
  return 0;
}

SliceRange readableSlice(std::ptrdiff_t start, std::ptrdiff_t stop, std::ptrdiff_t step, std::size_t size) {
  checkStep(step);
  auto const count = static_cast<std::ptrdiff_t>(size);
  if (step < 0) {
    return downward(start, stop, step, count);
  }
  return upward(start < 0 || start >= count ? 0 : start, stop, step, count);
}

SliceRange changeableSlice(std::ptrdiff_t start, std::ptrdiff_t stop, std::ptrdiff_t step, std::size_t size) {
  checkStep(step);
  auto const count = static_cast<std::ptrdiff_t>(size);
  if (step < 0) {
    return downward(start, stop, step, count);
  }
  return upward(std::clamp<std::ptrdiff_t>(start, 0, count), stop, step, count);
}

void checkSliceSize(std::size_t items, SliceRange const& range) {
  if (items != range.count) {
    throw std::invalid_argument("attempt to assign sequence of size " + std::to_string(items) +
                                " to extended slice of size " + std::to_string(range.count));
  }
}

} // namespace zorBinding
