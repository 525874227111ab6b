%module(directors="1", threads="1", docstring="Wires: what they are made of.") zorWire

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorWire.h"
%}

%include "shared/toolkit.i"
%import "zor.i"

%copyctor zorWire::WireParameters;
%ignore zorWire::WireParameters::operator==;
ZOR_RECORD(zorWire::WireParameters, WireParameters, self.getRadius(), self.getYoungsModulus(), self.getDensity(),
           self.getResolution())
%include <zorWire/WireParameters.h>
