// Every class that the module zorNet wraps; read by the modules that import it as well.
#pragma once

#include <zorNet/Endpoint.h>
