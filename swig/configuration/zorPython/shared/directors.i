// Toolkit classes that Python may derive from: how their calls reach Python and what becomes of errors.

%{
#include "runtime/DirectorError.h"
%}

// Standard methods follow the generator: the exception goes to the C++ caller, the Python error stays pending.

// A result must be exactly a bool.
%typemap(directorout) bool {
  if (!PyBool_Check($1)) {
    Swig::DirectorTypeMismatchException::raise(
        PyExc_TypeError, zorBinding::wrongBoolText(__PRETTY_FUNCTION__).c_str());
  }
  $result = PyObject_IsTrue($1) == 1;
}

// Script-managed methods: the script manager gets the error under LABEL and the toolkit goes on with RESULT.
%define ZOR_SCRIPT_MANAGED(METHOD, LABEL, SHORT_NAME, FILE, LINE, RESULT)
%feature("director:except") METHOD {
  if ($error != NULL) {
    zorBinding::registerDirectorError(LABEL, SHORT_NAME, "swig/configuration/zorPython/" FILE, LINE);
    return RESULT;
  }
}
%enddef
