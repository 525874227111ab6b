// Every class that the module zorCable wraps; read by the modules that import it as well.
#pragma once

#include <zorCable/CableProperties.h>
