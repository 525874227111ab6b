#include <Python.h>

#include "runtime/Registry.h"

namespace zorBinding {

namespace {

// One reference would do, if the wrapped objects that own something counted theirs right: each gives one back
// when it dies, also one that became the owner later (`thisown = True`) and never took any.
Py_ssize_t const REFERENCES = Py_ssize_t(1) << 28;

} // namespace

void keepTypeRegistry() {
  static bool isKept = false;
  if (isKept) {
    return;
  }
  if (PyObject* module = PyImport_ImportModule("swig_runtime_data4")) {
    if (PyObject* registry = PyObject_GetAttrString(module, "type_pointer_capsule")) {
      Py_SET_REFCNT(registry, Py_REFCNT(registry) + REFERENCES); // never given back: that is the purpose
      isKept = true;
    }
    Py_DECREF(module);
  }
  if (!isKept) {
    PyErr_Clear(); // without a shared registry there is nothing to keep
  }
}

void requireMainInterpreter() {
  if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
    PyErr_SetString(PyExc_ImportError, "the simulation modules can be used in the main interpreter only");
  }
}

} // namespace zorBinding
