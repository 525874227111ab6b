%module(threads="1", docstring="The script manager: errors of callbacks, and the application that runs a script.") zorPython

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
import zor
%}

%{
#include "headers/osg.h"
#include "headers/zor.h"
#include <zorOSG/CurrentApplication.h>
#include <zorOSG/ExampleApplication.h>
#include <zorOSG/Panel.h>
#include <zorPython/ScriptManager.h>
%}

%include "shared/toolkit.i"
%include "shared/interpreter.i"
%import "osg.i"
%import "zor.i"

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
ZOR_LENT(zorOSG::Panel)

// The classes stand in the module of the visualisation layer, which hands these functions on.
namespace zorOSG {
class ExampleApplication;
/** \return the application that is building a scene or running, or None */
zorOSG::ExampleApplication* getCurrentApplication();

class Panel;
/**
 * Creates a coloured rectangle on the screen. Places are parts of the picture: (0, 0) is the lower left corner, (1, 1) the upper
 * right one.
 * \param root - the group that gets and owns it; null gives null
 * \param position - of the lower left corner
 * \param size - width and height, not negative
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param object - what the panel belongs to, for Panel.match(); it is only compared
 * \return the panel, owned by root
 */
zorOSG::Panel* createPanel(osg::Group* root, zor::Vec2 const& position, zor::Vec2 const& size, zor::Vec4 const& color, void const* object = nullptr);
}
