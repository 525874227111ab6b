#pragma once

#include "PythonReference.h"

#include <zorPython/ScriptError.h>

#include <optional>

namespace zorPython {

/** \return what there is to tell about an exception, all but label, count and traceback. Never leaves a
 * Python error. */
ScriptError readError(PyObject* exception);

/** \return the traceback as the interpreter prints it; empty if it can't be told. Never leaves a Python
 * error. */
zor::String readTraceback(PyObject* exception);

/** \return the exit code if the exception asks to end the program */
std::optional<int> readStopRequest(PyObject* exception);

} // namespace zorPython
