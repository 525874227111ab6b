// Every class that the module osgSim wraps; read by the modules that import it as well.
#pragma once

#include <osgSim/ColorRange>
