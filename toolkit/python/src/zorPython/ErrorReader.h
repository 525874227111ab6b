#pragma once

#include "PythonReference.h"

#include <zorPython/ScriptError.h>

#include <optional>

namespace zorPython {

/** \return what there is to tell about an exception, all but label and count. Never leaves a Python error. */
ScriptError readError(PyObject* exception);

/** \return the exit code if the exception asks to end the program */
std::optional<int> readStopRequest(PyObject* exception);

} // namespace zorPython
