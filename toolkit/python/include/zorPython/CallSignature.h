#pragma once

#include <zorPython/ScriptValue.h>

namespace zorPython {

/**
 * \param function - a callable
 * \return number of positional parameters without a default value; 0 if it cannot be told
 */
int countRequiredParameters(ScriptValue const& function);

} // namespace zorPython
