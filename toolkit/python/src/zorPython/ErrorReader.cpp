#include "ErrorReader.h"

namespace zorPython {

namespace {
int readLine(PyObject* object, char const* attribute) {
  PythonReference const line(PyObject_GetAttrString(object, attribute));
  long const value = line && PyLong_Check(line.get()) ? PyLong_AsLong(line.get()) : 0;
  PyErr_Clear();
  return value > 0 && value <= 0x7fffffff ? static_cast<int>(value) : 0;
}

zor::String readString(PyObject* object, char const* attribute) {
  PythonReference const text(PyObject_GetAttrString(object, attribute));
  PyErr_Clear();
  return text && PyUnicode_Check(text.get()) ? toText(text.get()) : zor::String();
}

// In the interpreter's own words where the exception can't tell.
zor::String readMessage(PyObject* exception) {
  PythonReference const text(PyObject_Str(exception));
  PyErr_Clear();
  return text ? toText(text.get()) : "<exception str() failed>";
}

// A syntax error lies where the text is wrong, not where the compiler was called.
void readPlaceOfSyntaxError(PyObject* exception, ScriptError& error) {
  error.file = readString(exception, "filename");
  error.line = readLine(exception, "lineno");
}

void readPlace(PyObject* exception, ScriptError& error) {
  PythonReference place(PyException_GetTraceback(exception));
  while (place) {
    PythonReference next(PyObject_GetAttrString(place.get(), "tb_next"));
    if (!next || Py_IsNone(next.get())) {
      break;
    }
    place = std::move(next);
  }
  PyErr_Clear();
  if (!place) {
    return;
  }
  error.line = readLine(place.get(), "tb_lineno");
  PythonReference const frame(PyObject_GetAttrString(place.get(), "tb_frame"));
  PythonReference const code(frame ? PyObject_GetAttrString(frame.get(), "f_code") : nullptr);
  if (code) {
    error.file = readString(code.get(), "co_filename");
  }
  PyErr_Clear();
}
} // namespace

ScriptError readError(PyObject* exception) {
  ScriptError error;
  error.type = Py_TYPE(exception)->tp_name;
  error.message = readMessage(exception);
  if (PyErr_GivenExceptionMatches(exception, PyExc_SyntaxError)) {
    readPlaceOfSyntaxError(exception, error);
  } else {
    readPlace(exception, error);
  }
  return error;
}

zor::String readTraceback(PyObject* exception) {
  PythonReference const module(PyImport_ImportModule("traceback"));
  PythonReference const lines(module ? PyObject_CallMethod(module.get(), "format_exception", "O", exception)
                                     : nullptr);
  PythonReference const separator(PyUnicode_FromString(""));
  PythonReference const text(lines && separator ? PyUnicode_Join(separator.get(), lines.get()) : nullptr);
  if (!text) {
    PyErr_Clear();
    return {};
  }
  return toText(text.get());
}

std::optional<int> readStopRequest(PyObject* exception) {
  if (PyErr_GivenExceptionMatches(exception, PyExc_KeyboardInterrupt)) {
    return 130; // what a shell reports for a program ended by an interrupt
  }
  if (!PyErr_GivenExceptionMatches(exception, PyExc_SystemExit)) {
    return {};
  }
  PythonReference const code(PyObject_GetAttrString(exception, "code"));
  int result = 1;
  if (code && Py_IsNone(code.get())) {
    result = 0;
  } else if (code && PyLong_Check(code.get())) {
    result = static_cast<int>(PyLong_AsLong(code.get()));
  }
  PyErr_Clear();
  return result;
}

} // namespace zorPython
