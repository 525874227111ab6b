// Results that stay the scene graph's, the application's or the simulation's: the proxy does not own what it stands
// for (`thisown` is False), but keeps it alive.

// A fragment, which also comes into a module that has this file from an import.
%fragment("ZorLent", "header") %{
#include "runtime/Lent.h"
%}

%define ZOR_LENT(CLASS)
%typemap(out, fragment="ZorLent") CLASS*, CLASS const* {
  $result = SWIG_NewPointerObj(SWIG_as_voidptr($1), $descriptor(CLASS*), $owner);
  if (!($owner & SWIG_POINTER_OWN)) zorBinding::keepLent($result, $1);
}
%enddef

// The same for a class whose objects are new when they are returned, held by nobody: the proxy's reference is the
// first, and others may follow.
%define ZOR_LENT_NEW(CLASS)
%typemap(out, fragment="ZorLent") CLASS*, CLASS const* {
  $result = SWIG_NewPointerObj(SWIG_as_voidptr($1), $descriptor(CLASS*), $owner);
  if ($1 && !($owner & SWIG_POINTER_OWN)) {
    $1->reference();
    zorBinding::keepLent($result, $1);
    $1->unreferenceNoDelete();
  }
}
%enddef
