// Every class that the module osgGA wraps; read by the modules that import it as well.
#pragma once

#include <osgGA/CameraManipulator>
#include <osgGA/EventQueue>
#include <osgGA/FlightManipulator>
#include <osgGA/GUIEventHandler>
#include <osgGA/NodeTrackerManipulator>
#include <osgGA/OrbitManipulator>
#include <osgGA/StateSetManipulator>
#include <osgGA/TerrainManipulator>
#include <osgGA/TrackballManipulator>
