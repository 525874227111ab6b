// Values that may also be given as a Python list, in the functions that say so: the resolution and image sizes of
// cameras, the radii of splines. Their sections apply the typemap by the name of the parameter, for instance
//   %apply zor::Vec2i const& LIST { zor::Vec2i const& resolution };
// and %clear it behind the class, since a name applies to all functions that follow.

%{
#include "runtime/ListArguments.h"
%}

%define ZOR_LIST_TYPEMAPS(TYPE)
%typemap(in) TYPE const& LIST (void* argp = nullptr, int res = 0, TYPE read) {
  res = SWIG_ConvertPtr($input, &argp, $descriptor, 0);
  if (SWIG_IsOK(res)) {
    if (!argp) {
      %argument_nullref("$type", $symname, $argnum);
    }
    $1 = %reinterpret_cast(argp, $ltype);
  } else if (!PyList_Check($input)) {
    %argument_fail(res, "$type", $symname, $argnum);
  } else if (zorBinding::readList($input, read, "in method '$symname', argument $argnum of type '$type'")) {
    $1 = &read;
  } else {
    SWIG_fail;
  }
}
%typemap(freearg) TYPE const& LIST ""
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) TYPE const& LIST {
  $1 = (SWIG_IsOK(SWIG_ConvertPtr($input, nullptr, $descriptor, SWIG_POINTER_NO_NULL)) || PyList_Check($input)) ? 1 : 0;
}
%enddef

ZOR_LIST_TYPEMAPS(zor::Vec2i)
ZOR_LIST_TYPEMAPS(zor::RealVector)
