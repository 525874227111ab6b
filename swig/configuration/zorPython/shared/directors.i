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

// A virtual method of a class below those that Python may derive from. A call that comes from the Python object
// which overrides the method, or which lacks it, goes to the toolkit's own implementation.
%define ZOR_UPCALL(CLASS, METHOD, ARGUMENTS)
%exception CLASS::METHOD {
  try {
    auto const* director = dynamic_cast<Swig::Director const*>(arg1);
    if (director && director->swig_get_self() == swig_obj[0]) {
      arg1->CLASS::METHOD ARGUMENTS;
    } else {
      $action
    }
  } catch (...) {
    zorBinding::setToolkitError();
    SWIG_fail;
  }
  if (zorBinding::errorPending()) SWIG_fail;
}
%enddef
