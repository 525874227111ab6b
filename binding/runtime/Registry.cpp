#include <Python.h>

#include "runtime/Registry.h"

namespace zorBinding {

void keepTypeRegistry() {
  static bool isKept = false;
  if (isKept) {
    return;
  }
  if (PyObject* module = PyImport_ImportModule("swig_runtime_data4")) {
    // The new reference is never given back: that is the purpose.
    isKept = PyObject_GetAttrString(module, "type_pointer_capsule") != nullptr;
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
