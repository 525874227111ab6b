// How C++ exceptions become Python exceptions. Included once per module, before any declaration.

%include <exception.i>

%{
#include "runtime/ToolkitError.h"
%}

// Default guard, around every call into the toolkit. An error that a Python callback left pending is what the
// caller gets, whether the call threw or came back.
%exception {
  try {
    $action
  } catch (...) {
    zorBinding::setToolkitError();
    SWIG_fail;
  }
  if (PyErr_Occurred()) SWIG_fail;
}

// For operations of sequences: out of range is an IndexError, an impossible value a ValueError.
%define ZOR_SEQUENCE_GUARD(METHOD)
%exception METHOD {
  try {
    $action
  } catch (...) {
    zorBinding::setSequenceError();
    SWIG_fail;
  }
}
%enddef
