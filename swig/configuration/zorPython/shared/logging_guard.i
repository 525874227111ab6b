// Methods whose errors go to the toolkit's log: the wrapper returns null and sets no error of its own, so that a
// pending Python error of an override is what the caller sees. FILE and LINE name the place of the declaration.

%{
#include "runtime/ErrorLog.h"
%}

%define ZOR_LOGGING_GUARD(METHOD, FILE, LINE)
%exception METHOD {
  try {
    $action
  } catch (std::exception const& error) {
    zorBinding::logError("$wrapname", "swig/configuration/zorPython/" FILE ".i", LINE, error);
    SWIG_fail;
  } catch (...) {
    zorBinding::setToolkitError();
    SWIG_fail;
  }
  if (zorBinding::errorPending()) SWIG_fail;
}
%enddef
