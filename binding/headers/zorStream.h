// Every class that the module zorStream wraps; read by the modules that import it as well.
#pragma once

#include <zorStream/Serializable.h>
