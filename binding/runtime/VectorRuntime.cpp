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

float readFloat(PyObject* item) {
  double const number = readReal(item);
  auto const narrow = static_cast<float>(number);
  if (std::isinf(narrow) && std::isfinite(number)) {
    PyErr_SetString(PyExc_OverflowError, "a number is too large for single precision");
    fail();
  }
  return narrow;
}

unsigned long readUnsignedLong(PyObject* item) {
  Reference const whole(PyNumber_Index(item));
  unsigned long const number = whole ? PyLong_AsUnsignedLong(whole.get()) : 0;
  if (PyErr_Occurred()) {
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
  case 'l':
    return store(place,
                 readInteger(item, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()));
  case 'L':
    return store(place, readUnsignedLong(item));
  case 'd':
    return store(place, readReal(item));
  case 'f':
    return store(place, readFloat(item));
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

// Reading an item may run Python code, which may change a list: each is asked for anew.
Reference itemOf(PyObject* sequence, Py_ssize_t i) {
  if (i >= PySequence_Fast_GET_SIZE(sequence)) {
    PyErr_SetString(PyExc_ValueError, "a row changed while it was read");
    fail();
  }
  return Reference(Py_NewRef(PySequence_Fast_GET_ITEM(sequence, i)));
}

Reference fastSequence(PyObject* values, char const* message) {
  Reference items(PySequence_Fast(values, message));
  if (!items) {
    fail();
  }
  return items;
}

Reference checked(PyObject* object) {
  if (!object) {
    fail();
  }
  return Reference(object);
}

template <class T>
T load(void const* place) {
  T number;
  std::memcpy(&number, place, sizeof number);
  return number;
}

std::size_t sizeOf(char format) {
  return format == 'B' ? 1 : format == 'f' || format == 'i' || format == 'I' ? 4 : 8;
}

PyObject* newNumber(void const* place, char format) {
  switch (format) {
  case 'd':
    return PyFloat_FromDouble(load<double>(place));
  case 'f':
    return PyFloat_FromDouble(static_cast<double>(load<float>(place)));
  case 'i':
    return PyLong_FromLong(load<int>(place));
  case 'I':
    return PyLong_FromUnsignedLong(load<unsigned>(place));
  case 'B':
    return PyLong_FromLong(load<unsigned char>(place));
  default:
    throw std::logic_error("element type without a reader");
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

void readRow(PyObject* row, int rowSize, int fewest, char format, void* place) {
  Reference const items = fastSequence(row, "a row of numbers is expected");
  Py_ssize_t const size = PySequence_Fast_GET_SIZE(items.get());
  if (size < fewest || size > rowSize) {
    PyErr_Format(PyExc_ValueError, "a row of %d numbers is expected, not of %zd", rowSize, size);
    fail();
  }
  for (Py_ssize_t i = 0; i < size; ++i) {
    storeNumber(itemOf(items.get(), i).get(), format, place);
  }
}

void readMatrix(PyObject* values, int rows, int columns, double* numbers) {
  Reference const items = fastSequence(values, "rows of numbers are expected");
  Py_ssize_t const size = PySequence_Fast_GET_SIZE(items.get());
  if (size == rows * columns) {
    return readRow(items.get(), rows * columns, rows * columns, 'd', numbers);
  }
  if (size != rows) {
    PyErr_Format(PyExc_ValueError, "%d rows of %d numbers, or %d numbers, are expected, not %zd", rows,
                 columns, rows * columns, size);
    fail();
  }
  for (int row = 0; row < rows; ++row) {
    readRow(itemOf(items.get(), row).get(), columns, columns, 'd', numbers + row * columns);
  }
}

PyObject* newTuple(void const* numbers, char format, int count) {
  PyObject* tuple = PyTuple_New(count);
  for (int i = 0; tuple && i < count; ++i) {
    PyObject* number =
        newNumber(static_cast<char const*>(numbers) + static_cast<std::size_t>(i) * sizeOf(format), format);
    if (!number) {
      Py_CLEAR(tuple);
      break;
    }
    PyTuple_SET_ITEM(tuple, i, number);
  }
  return tuple;
}

PyObject* newTupleSlice(void const* numbers, char format, int count, PyObject* slice) {
  Reference const all = checked(newTuple(numbers, format, count));
  return checked(PyObject_GetItem(all.get(), slice)).release();
}

void assignNumbers(void* numbers, char format, int count, PyObject* slice, PyObject* values) {
  Reference const all = checked(newTuple(numbers, format, count));
  Reference const list = checked(PySequence_List(all.get()));
  if (PyObject_SetItem(list.get(), slice, values) != 0) {
    fail();
  }
  if (PyList_GET_SIZE(list.get()) != count) {
    PyErr_Format(PyExc_ValueError, "as many numbers are expected as the slice has, so that there are %d",
                 count);
    fail();
  }
  char fresh[16 * sizeof(double)];
  readRow(list.get(), count, count, format, fresh);
  std::memcpy(numbers, fresh, static_cast<std::size_t>(count) * sizeOf(format));
}

PyObject* newNumberIterator(void const* numbers, char format, int count) {
  Reference const all = checked(newTuple(numbers, format, count));
  return PyObject_GetIter(all.get());
}

bool clearConversionError() {
  if (PyErr_ExceptionMatches(PyExc_TypeError) || PyErr_ExceptionMatches(PyExc_ValueError) ||
      PyErr_ExceptionMatches(PyExc_OverflowError)) {
    PyErr_Clear();
    return true;
  }
  return false;
}

SliceRange listSlice(PyObject* slice, std::size_t size) {
  Py_ssize_t start = 0;
  Py_ssize_t stop = 0;
  Py_ssize_t step = 0;
  if (PySlice_Unpack(slice, &start, &stop, &step) != 0) {
    fail();
  }
  Py_ssize_t const count = PySlice_AdjustIndices(static_cast<Py_ssize_t>(size), &start, &stop, step);
  return {start, step, static_cast<std::size_t>(count)};
}

void readTexts(PyObject* values, TextSink& sink) {
  Reference const iterator = checked(PyObject_GetIter(values));
  while (Reference const item{PyIter_Next(iterator.get())}) {
    if (!PyUnicode_Check(item.get())) {
      PyErr_Format(PyExc_TypeError, "a str is expected, not %s", Py_TYPE(item.get())->tp_name);
      fail();
    }
    Reference const bytes = checked(PyUnicode_AsEncodedString(item.get(), "utf-8", "surrogateescape"));
    sink.add(
        std::string(PyBytes_AS_STRING(bytes.get()), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.get()))));
  }
  if (PyErr_Occurred()) {
    fail();
  }
}

std::string quotedText(std::string const& text) {
  Reference const decoded =
      checked(PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
  Reference const quoted = checked(PyObject_ASCII(decoded.get()));
  return PyUnicode_AsUTF8(quoted.get());
}

void readNumbers(PyObject* values, int rowSize, int fewest, char format, NumberSink& sink) {
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
      readRow(item.get(), rowSize, fewest, format, place);
    } else {
      storeNumber(item.get(), format, place);
    }
  }
  if (PyErr_Occurred()) {
    fail();
  }
}

} // namespace zorBinding
