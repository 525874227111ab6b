// Every class that the module osgText wraps; read by the modules that import it as well.
#pragma once

#include <osgText/Text>
