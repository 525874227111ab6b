#pragma once

#include <zor/Types.h>

namespace zorPython {

/** An error of a script, as recorded by the script manager. */
struct ScriptError {
  zor::String label;     ///< where it came to light, for instance "zorOSG::GuiEventListener::keyboard"
  zor::String type;      ///< name of the Python exception class, or empty if it was none
  zor::String message;   ///< text of the exception
  zor::String file;      ///< source file of the innermost place; empty if unknown
  int line = 0;          ///< line in that file; 0 if unknown
  zor::String traceback; ///< the traceback as the interpreter prints it
  zor::UInt count = 1;   ///< how often the same error has been registered
};

} // namespace zorPython
