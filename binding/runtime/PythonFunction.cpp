#include <Python.h>

#include "runtime/DirectorError.h"
#include "runtime/PythonFunction.h"

#include <memory>
#include <stdexcept>

namespace zorBinding {
namespace {

// The last copy of a function may die on any thread, or after the interpreter.
struct LockedRelease {
  void operator()(PyObject* object) const {
    if (Py_IsInitialized()) {
      PyGILState_STATE const lock = PyGILState_Ensure();
      Py_DECREF(object);
      PyGILState_Release(lock);
    }
  }
};

} // namespace

std::function<void()> functionOf(PyObject* callable, std::string label) {
  if (!PyCallable_Check(callable)) {
    throw std::invalid_argument(std::string("a callable is expected, not ") + Py_TYPE(callable)->tp_name);
  }
  Py_INCREF(callable);
  std::shared_ptr<PyObject> const kept(callable, LockedRelease());
  return [kept, label = std::move(label)] {
    PyGILState_STATE const lock = PyGILState_Ensure();
    PyObject* result = PyObject_CallNoArgs(kept.get());
    if (result) {
      Py_DECREF(result);
    } else {
      registerDirectorError(label.c_str(), label.c_str(), "binding/runtime/PythonFunction.cpp", 0);
    }
    PyGILState_Release(lock);
  };
}

} // namespace zorBinding
