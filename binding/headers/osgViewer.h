// Every class that the module osgViewer wraps; read by the modules that import it as well.
#pragma once

#include <osgViewer/Viewer>
#include <osgViewer/ViewerEventHandlers>
