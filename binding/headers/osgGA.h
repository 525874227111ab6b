// Every class that the module osgGA wraps; read by the modules that import it as well.
#pragma once

#include <osgGA/CameraManipulator>
#include <osgGA/EventQueue>
