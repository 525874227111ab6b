#include <Python.h>

#include "runtime/ListArguments.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace zorBinding {
namespace {

struct Release {
  void operator()(PyObject* object) const { Py_DECREF(object); }
};
using Owned = std::unique_ptr<PyObject, Release>;

bool fail(PyObject* type, char const* argument) {
  PyErr_SetString(type, argument);
  return false;
}

bool readNumber(PyObject* item, double& number, char const* argument) {
  number = PyFloat_AsDouble(item);
  if (number == -1.0 && PyErr_Occurred()) {
    // Whatever else an item's own __float__ raises is its own affair.
    for (PyObject* type : {PyExc_TypeError, PyExc_OverflowError}) {
      if (PyErr_ExceptionMatches(type)) {
        return fail(type, argument);
      }
    }
    return false;
  }
  return !std::isnan(number) || fail(PyExc_ValueError, argument);
}

bool readInt(PyObject* item, int& number, char const* argument) {
  double real = 0.0;
  if (!readNumber(item, real, argument)) {
    return false;
  }
  real = std::trunc(real);
  typedef std::numeric_limits<int> Range;
  if (real < Range::min() || real > Range::max()) {
    return fail(PyExc_OverflowError, argument);
  }
  number = static_cast<int>(real);
  return true;
}

} // namespace

bool readList(PyObject* list, zor::Vec2i& value, char const* argument) {
  if (PyList_Size(list) != 2) {
    return fail(PyExc_ValueError, "Vec2i expected a sequence of size 2");
  }
  Owned const items(PyList_AsTuple(list));
  return items && readInt(PyTuple_GET_ITEM(items.get(), 0), value.x(), argument) &&
         readInt(PyTuple_GET_ITEM(items.get(), 1), value.y(), argument);
}

bool readList(PyObject* list, zor::RealVector& value, char const* argument) {
  Owned const items(PyList_AsTuple(list));
  if (!items) {
    return false;
  }
  Py_ssize_t const size = PyTuple_GET_SIZE(items.get());
  value.reserve(static_cast<std::size_t>(std::max<Py_ssize_t>(size, 4)));
  for (Py_ssize_t i = 0; i < size; ++i) {
    double number = 0.0;
    if (!readNumber(PyTuple_GET_ITEM(items.get(), i), number, argument)) {
      return false;
    }
    value.push_back(number);
  }
  return true;
}

} // namespace zorBinding
