// Every class that the module zorSensor wraps; read by the modules that import it as well.
#pragma once

#include <zorSensor/RayPattern.h>
