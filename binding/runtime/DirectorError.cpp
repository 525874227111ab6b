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
    zorPython::ScriptManager* manager = nullptr;
    {
      EarlierError const kept;
      manager = zorPython::ScriptManager::instance("", "", "", false);
    }
    if (!manager) {
      return false;
    }
    manager->registerError(label);
  } catch (std::exception const& failure) {
    logError(function, file, line, failure);
  }
  return true;
}

EarlierError::EarlierError() : m_error(PyErr_GetRaisedException()) {}

EarlierError::~EarlierError() {
  if (m_error) {
    PyErr_SetRaisedException(m_error);
  }
}

std::string wrongBoolText(char const* signature) {
  return std::string(": Python code called by '") + signature +
         "' has wrong output value type. Expected bool.";
}

} // namespace zorBinding
