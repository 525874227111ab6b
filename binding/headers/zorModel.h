// Every class that the module zorModel wraps; read by the modules that import it as well.
#pragma once

#include <zorModel/PressureFieldRenderer.h>
#include <zorModel/ReadMesh.h>
#include <zorModel/TriangleData.h>
#include <zorModel/UrdfJoint.h>
#include <zorModel/UrdfReader.h>
