// What every module of the family needs, in the order in which it must be read.

// Doubtful only in other languages or already said in the declarations: shadowed const overloads (509, 512, 516),
// nothing known about base classes outside the family (401), default arguments hidden by overloads, operators
// without a Python counterpart (361, 362, 365..389, 503), nested types kept opaque (325), using-declarations of
// members that the family does not wrap (315), keywords of Python (314).
#pragma SWIG nowarn=302,314,315,317,325,350,361,362,365,366,367,368,371,372,378,379,380,381,382,383,389,401,402,473,503,509,512,516,520

%nothreadallow;

%include "shared/docs.i"
%include "shared/self.i"
%include "shared/members.i"
%include "shared/exceptions.i"
%include "shared/logging_guard.i"
%include "shared/strings.i"
%include "shared/values.i"

%include "shared/types.i"

%{
#include "runtime/Registry.h"
%}
%init %{
  zorBinding::keepTypeRegistry();
%}

// No wrapper gives the interpreter lock away. The feature above does not reach the wrappers that the generator makes
// for its own functions (disown_X), which count references.
%{
#undef SWIG_PYTHON_THREAD_BEGIN_ALLOW
#define SWIG_PYTHON_THREAD_BEGIN_ALLOW
#undef SWIG_PYTHON_THREAD_END_ALLOW
#define SWIG_PYTHON_THREAD_END_ALLOW
%}

// A result that lives inside the object it was asked of keeps that object alive.
%define ZOR_INNER_RESULT(METHOD)
%feature("pythonappend") METHOD %{
        if val is not None:
            val._owner = self
%}
%enddef
