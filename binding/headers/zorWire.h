// Every class that the module zorWire wraps; read by the modules that import it as well.
#pragma once

#include <zorWire/WireParameters.h>
