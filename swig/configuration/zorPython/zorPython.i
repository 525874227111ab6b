%module(threads="1", docstring="The script manager: errors of callbacks, and the application that runs a script.") zorPython

%{
#include <zorOSG/CurrentApplication.h>
#include <zorOSG/ExampleApplication.h>
#include <zorPython/ScriptManager.h>
%}

%include "shared/common.i"
%include "shared/interpreter.i"

%ignore zorPython::ScriptManager;

%immutable zorPython::ScriptError::label;
%immutable zorPython::ScriptError::type;
%immutable zorPython::ScriptError::message;
%immutable zorPython::ScriptError::file;
%immutable zorPython::ScriptError::line;
%immutable zorPython::ScriptError::traceback;
%immutable zorPython::ScriptError::count;
%nodefaultctor zorPython::ScriptError;
%include <zorPython/ScriptError.h>
%extend zorPython::ScriptError {
  %pythoncode %{
    def __repr__(self):
        return f"<{self.type or 'error'} in {self.label}: {self.message}>"
  %}
}

%inline %{
/** \return the number of errors of Python callbacks since clearErrors(), repetitions included */
static size_t getNumErrors() { return zorPython::ScriptManager::getOrCreate().getNumErrors(); }

/** Forgets the recorded errors. */
static void clearErrors() { zorPython::ScriptManager::getOrCreate().clearErrors(); }

static size_t _numKinds() { return zorPython::ScriptManager::getOrCreate().getErrors().size(); }

static zorPython::ScriptError _error(size_t index) {
  return zorPython::ScriptManager::getOrCreate().getErrors().at(index);
}
%}

%pythoncode %{
def getErrors() -> list[ScriptError]:
    """Returns the errors of Python callbacks since clearErrors(), each kind once, the oldest first."""
    return [_error(i) for i in range(_numKinds())]
%}

%include "shared/lent.i"
ZOR_LENT(zorOSG::ExampleApplication)

// The class stands in the module of the visualisation layer, which hands this function on.
namespace zorOSG {
class ExampleApplication;
/** \return the application that is building a scene or running, or None */
zorOSG::ExampleApplication* getCurrentApplication();
}
