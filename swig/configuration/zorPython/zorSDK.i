%module(directors="1", threads="1", docstring="Simulation, assemblies and the listeners that a simulation calls.") zorSDK

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
import zorStream
import zorCollide
%}

%{
#include "headers/zor.h"
#include "headers/zorRender.h"
#include "headers/zorStream.h"
#include "headers/zorCollide.h"
#include "headers/zorSDK.h"
%}

%include "shared/toolkit.i"
%import "zor.i"
%import "zorStream.i"
%import "zorCollide.i"

ZOR_SHARED(zorSDK::Simulation)
ZOR_SHARED(zorSDK::Assembly)
ZOR_SHARED(zorSDK::EventListener)
ZOR_SHARED(zorSDK::StepEventListener)
ZOR_SHARED(zorSDK::ContactEventListener)
ZOR_SHARED(zorSDK::GuiEventListener)
ZOR_SHARED(zorSDK::PickHandler)

%include "zorSDK/listeners.i"
%include "zorSDK/files.i"

%include <zorSDK/PickResult.h>
%include <zorSDK/PickHandler.h>

%copyctor zorSDK::SimulationStatistics;
%include <zorSDK/SimulationStatistics.h>
%include <zorSDK/Simulation.h>
%include <zorSDK/Assembly.h>
