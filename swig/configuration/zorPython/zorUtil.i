%module(directors="1", threads="1", docstring="Splines, and makers of what the standard library has.") zorUtil

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorUtil.h"
%}

%include "shared/toolkit.i"
%import "zor.i"

ZOR_SHARED(zorUtil::Spline)

%include <zorUtil/Spline.h>
%include <zorUtil/CatmullRomSpline.h>
%include <zorUtil/NaturalSpline.h>
%define ZOR_SPLINE(CLASS)
%extend zorUtil::CLASS {
  %pythoncode %{
    def __repr__(self):
        return f"<{type(self).__name__} of {len(self)} points, {self.length():g} m>"
  %}
}
%enddef
ZOR_SPLINE(CatmullRomSpline)
ZOR_SPLINE(NaturalSpline)
%extend zorUtil::Spline {
  %pythoncode %{
    def __len__(self) -> int:
        return self.getNumPoints()
  %}
}
%include "zorUtil/standard.i"
