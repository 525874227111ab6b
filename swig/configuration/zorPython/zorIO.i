%module(directors="1", threads="1", docstring="Command line, environment and the search of resource files.") zorIO

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorIO.h"
%}

%include "shared/toolkit.i"
%include "shared/iterators.i"
%include <std_vector.i>
%import "zor.i"

// Lists of texts are plain Python sequences: made from any iterable of str, and given as tuples.
%template() std::vector<std::string>;
%typemap(out) std::vector<std::string> const& {
  $result = swig::from(static_cast<std::vector<std::string> const&>(*$1));
}

%typemap(out) zor::Vector<zor::String> const& {
  $result = PyList_New(0);
  for (std::string const& text : *$1) {
    PyObject* item = SWIG_FromCharPtrAndSize(text.data(), text.size());
    PyList_Append($result, item);
    Py_DECREF(item);
  }
}

// The overload test must not use up an iterator.
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) std::vector<std::string> const& {
  $1 = !PyUnicode_Check($input) && (Py_TYPE($input)->tp_iter || PySequence_Check($input));
}

%ignore zorIO::ArgumentParser::ArgumentParser(int, char const* const*);
%include <zorIO/ArgumentParser.h>
%include <zorIO/ResourcePath.h>
%nodefaultctor zorIO::Environment;
%nodefaultdtor zorIO::Environment;
%include <zorIO/Environment.h>
