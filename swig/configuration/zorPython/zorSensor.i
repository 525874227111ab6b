%module(directors="1", threads="1", docstring="Sensors: where they look.") zorSensor

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorSensor.h"
%}

%include "shared/toolkit.i"
%import "zor.i"

%copyctor zorSensor::RayPattern;
%ignore zorSensor::RayPattern::operator==;
ZOR_RECORD(zorSensor::RayPattern, RayPattern, self.getHorizontalAngle(), self.getNumRaysPerLayer(),
           self.getVerticalAngle(), self.getNumLayers())
%include <zorSensor/RayPattern.h>
