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

std::shared_ptr<PyObject> keep(PyObject* callable) {
  if (!PyCallable_Check(callable)) {
    throw std::invalid_argument(std::string("a callable is expected, not ") + Py_TYPE(callable)->tp_name);
  }
  return std::shared_ptr<PyObject>(Py_NewRef(callable), LockedRelease());
}

// Calls with one argument, or none if it is null.
void callLocked(PyObject* callable, PyObject* argument, std::string const& label) {
  PyGILState_STATE const lock = PyGILState_Ensure();
  PyObject* result = argument ? PyObject_CallOneArg(callable, argument) : PyObject_CallNoArgs(callable);
  if (result) {
    Py_DECREF(result);
  } else {
    registerDirectorError(label.c_str(), label.c_str(), "binding/runtime/PythonFunction.cpp", 0);
  }
  PyGILState_Release(lock);
}

} // namespace

std::function<void()> functionOf(PyObject* callable, std::string label) {
  return [kept = keep(callable), label = std::move(label)] { callLocked(kept.get(), nullptr, label); };
}

std::function<void(bool)> boolFunctionOf(PyObject* callable, std::string label) {
  return [kept = keep(callable), label = std::move(label)](bool value) {
    callLocked(kept.get(), value ? Py_True : Py_False, label);
  };
}

std::function<void(void*)> objectFunctionOf(PyObject* callable, PyObject* (*wrap)(void*), std::string label) {
  return [kept = keep(callable), wrap, label = std::move(label)](void* object) {
    PyGILState_STATE const lock = PyGILState_Ensure();
    PyObject* argument = wrap(object);
    if (argument) {
      callLocked(kept.get(), argument, label);
      Py_DECREF(argument);
    } else {
      registerDirectorError(label.c_str(), label.c_str(), "binding/runtime/PythonFunction.cpp", 0);
    }
    PyGILState_Release(lock);
  };
}

} // namespace zorBinding
