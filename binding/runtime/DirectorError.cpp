#include <Python.h>

#include "runtime/DirectorError.h"
#include "runtime/ErrorLog.h"

#include <zorPython/ScriptManager.h>

#include <exception>

namespace zorBinding {

void registerDirectorError(char const* label, char const* function, char const* file, int line) {
  registerStepError(label, function, file, line);
}

bool registerStepError(char const* label, char const* function, char const* file, int line) {
  try {
    PyObject* error = PyErr_GetRaisedException();
    zorPython::ScriptManager* manager = zorPython::ScriptManager::instance("", "", "", false);
    PyErr_SetRaisedException(error);
    if (!manager) {
      return false;
    }
    manager->registerError(label);
  } catch (std::exception const& failure) {
    logError(function, file, line, failure);
  }
  return true;
}

std::string wrongBoolText(char const* signature) {
  return std::string(": Python code called by '") + signature +
         "' has wrong output value type. Expected bool.";
}

} // namespace zorBinding
