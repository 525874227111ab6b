// Text. std::string parameters follow the generator's rules; zor::String ones are read up to the first NUL, and
// take file names that the interpreter decoded with "surrogateescape".

%include <std_string.i>

%{
#include "runtime/Text.h"
%}

%fragment("ZorStringIn", "header") %{
#define ZOR_STRING_IN(object, text)                                                                               \
  if (!zorBinding::readText(object, text)) {                                                                      \
    SWIG_exception_fail(SWIG_RuntimeError, "basic_string: construction from null is not valid");                  \
  }
%}

%typemap(in, fragment="ZorStringIn") zor::String const& (std::string text) {
  ZOR_STRING_IN($input, text)
  $1 = &text;
}
%typemap(in, fragment="ZorStringIn") zor::String {
  std::string text;
  ZOR_STRING_IN($input, text)
  $1 = text;
}
%typemap(freearg) zor::String const& ""
%typemap(typecheck, precedence=SWIG_TYPECHECK_STRING) zor::String const&, zor::String {
  $1 = PyUnicode_Check($input);
}
