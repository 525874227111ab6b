#include <Python.h>

#include "runtime/ToolkitError.h"

#include <exception>
#include <stdexcept>

namespace zorBinding {
namespace {

// Messages may carry file names in any encoding: undecodable bytes become surrogates instead of another
// error.
void setError(PyObject* type, char const* text) {
  if (PyObject* message =
          PyUnicode_DecodeUTF8(text, static_cast<Py_ssize_t>(__builtin_strlen(text)), "surrogateescape")) {
    PyErr_SetObject(type, message);
    Py_DECREF(message);
  }
}

} // namespace

void setToolkitError() {
  PyGILState_STATE const lock = PyGILState_Ensure();
  if (!PyErr_Occurred()) {
    try {
      throw;
    } catch (std::exception const& error) {
      setError(PyExc_RuntimeError, error.what());
    } catch (...) {
      setError(PyExc_RuntimeError, "Unknown exception");
    }
  }
  PyGILState_Release(lock);
}

void setSequenceError() {
  PyGILState_STATE const lock = PyGILState_Ensure();
  if (!PyErr_Occurred()) {
    try {
      throw;
    } catch (std::out_of_range const& error) {
      setError(PyExc_IndexError, error.what());
    } catch (std::invalid_argument const& error) {
      setError(PyExc_ValueError, error.what());
    } catch (...) {
      setToolkitError();
    }
  }
  PyGILState_Release(lock);
}

bool errorPending() {
  return PyErr_Occurred() != nullptr;
}

} // namespace zorBinding
