#include <Python.h>

#include "runtime/VectorRuntime.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace zorBinding {
namespace {

struct Releaser {
  void operator()(PyObject* object) const { Py_XDECREF(object); }
};
typedef std::unique_ptr<PyObject, Releaser> Reference;

[[noreturn]] void fail() {
  throw std::runtime_error("the Python error says what is wrong");
}

double readReal(PyObject* item) {
  double const number = PyFloat_AsDouble(item);
  if (number == -1.0 && PyErr_Occurred()) {
    fail();
  }
  return number;
}

long readInteger(PyObject* item, long lower, long upper) {
  long const number = PyLong_AsLong(item);
  if (number == -1 && PyErr_Occurred()) {
    fail();
  }
  if (number < lower || number > upper) {
    PyErr_Format(PyExc_OverflowError, "%ld is not in the range %ld to %ld", number, lower, upper);
    fail();
  }
  return number;
}

template <class T>
void store(void*& place, T number) {
  std::memcpy(place, &number, sizeof number);
  place = static_cast<char*>(place) + sizeof number;
}

void storeNumber(PyObject* item, char format, void*& place) {
  switch (format) {
  case 'd':
    return store(place, readReal(item));
  case 'f':
    return store(place, static_cast<float>(readReal(item)));
  case 'i':
    return store(place, static_cast<int>(readInteger(item, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max())));
  case 'I':
    return store(place, static_cast<unsigned>(readInteger(item, 0, std::numeric_limits<unsigned>::max())));
  case 'h':
    return store(place, static_cast<short>(readInteger(item, -32768, 32767)));
  case 'H':
    return store(place, static_cast<unsigned short>(readInteger(item, 0, 65535)));
  case 'b':
    return store(place, static_cast<signed char>(readInteger(item, -128, 127)));
  case 'B':
    return store(place, static_cast<unsigned char>(readInteger(item, 0, 255)));
  default:
    throw std::logic_error("element type without a reader");
  }
}

void readRow(PyObject* row, int size, char format, void* place) {
  Reference const items(PySequence_Fast(row, "a row of numbers is expected"));
  if (!items) {
    fail();
  }
  if (PySequence_Fast_GET_SIZE(items.get()) != size) {
    PyErr_Format(PyExc_ValueError, "a row of %d numbers is expected, not of %zd", size,
                 PySequence_Fast_GET_SIZE(items.get()));
    fail();
  }
  for (int i = 0; i < size; ++i) {
    storeNumber(PySequence_Fast_GET_ITEM(items.get(), i), format, place);
  }
}

// Copies a buffer that has the wanted layout. False, without an error, if the object has no such buffer.
bool readBuffer(PyObject* values, int rowSize, char format, NumberSink& sink) {
  Py_buffer view;
  if (!PyObject_CheckBuffer(values)) {
    return false;
  }
  if (PyObject_GetBuffer(values, &view, PyBUF_C_CONTIGUOUS | PyBUF_FORMAT) != 0) {
    PyErr_Clear();
    return false;
  }
  std::unique_ptr<Py_buffer, decltype(&PyBuffer_Release)> const release(&view, &PyBuffer_Release);
  bool const fits = view.format && view.format[0] == format && view.format[1] == 0 &&
                    view.ndim == (rowSize ? 2 : 1) && (!rowSize || view.shape[1] == rowSize);
  if (!fits) {
    return false;
  }
  auto const rowBytes = static_cast<std::size_t>(view.itemsize * std::max(rowSize, 1));
  for (Py_ssize_t row = 0; row < view.shape[0]; ++row) {
    std::memcpy(sink.addRow(), static_cast<char const*>(view.buf) + static_cast<std::size_t>(row) * rowBytes,
                rowBytes);
  }
  return true;
}

} // namespace

std::size_t insertionIndex(std::ptrdiff_t index, std::size_t size) {
  auto const count = static_cast<std::ptrdiff_t>(size);
  return static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(index < 0 ? index + count : index, 0, count));
}

void readNumbers(PyObject* values, int rowSize, char format, NumberSink& sink) {
  if (readBuffer(values, rowSize, format, sink)) {
    return;
  }
  Reference const iterator(PyObject_GetIter(values));
  if (!iterator) {
    fail();
  }
  while (Reference const item{PyIter_Next(iterator.get())}) {
    void* place = sink.addRow();
    if (rowSize) {
      readRow(item.get(), rowSize, format, place);
    } else {
      storeNumber(item.get(), format, place);
    }
  }
  if (PyErr_Occurred()) {
    fail();
  }
}

} // namespace zorBinding
