// Every class that the module osgDB wraps; read by the modules that import it as well.
#pragma once

#include <osgDB/FileUtils>
#include <osgDB/Options>
#include <osgDB/ReadFile>
#include <osgDB/Registry>
#include <osgDB/WriteFile>
