#include "PythonReference.h"

namespace zorPython {

zor::String toText(PyObject* unicode) {
  PythonReference const bytes(PyUnicode_AsEncodedString(unicode, "utf-8", "backslashreplace"));
  if (!bytes) {
    PyErr_Clear();
    return {};
  }
  return {PyBytes_AS_STRING(bytes.get()), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.get()))};
}

zor::String describe(PyObject* object) {
  PythonReference const text(PyObject_Str(object));
  if (!text) {
    PyErr_Clear();
    return {};
  }
  return toText(text.get());
}

} // namespace zorPython
