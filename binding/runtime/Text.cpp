#include <Python.h>

#include "runtime/Text.h"

namespace zorBinding {
namespace {

bool readEscaped(PyObject* object, std::string& text) {
  PyObject* bytes = PyUnicode_AsEncodedString(object, "utf-8", "surrogateescape");
  if (!bytes) {
    PyErr_Clear();
    return false;
  }
  text.assign(PyBytes_AS_STRING(bytes));
  Py_DECREF(bytes);
  return true;
}

} // namespace

bool readText(PyObject* object, std::string& text) {
  if (!PyUnicode_Check(object)) {
    return false;
  }
  char const* utf8 = PyUnicode_AsUTF8(object);
  if (!utf8) {
    PyErr_Clear();
    return readEscaped(object, text);
  }
  text.assign(utf8);
  return true;
}

} // namespace zorBinding
