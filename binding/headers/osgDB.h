// Every class that the module osgDB wraps; read by the modules that import it as well.
#pragma once

#include <osgDB/Options>
#include <osgDB/ReadFile>
#include <osgDB/WriteFile>
