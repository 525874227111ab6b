// Every class that the module zorSDK wraps; read by the modules that import it as well.
#pragma once

#include <zorSDK/Assembly.h>
#include <zorSDK/ContactEventListener.h>
#include <zorSDK/EventListener.h>
#include <zorSDK/GuiEventListener.h>
#include <zorSDK/PickHandler.h>
#include <zorSDK/PickResult.h>
#include <zorSDK/Simulation.h>
#include <zorSDK/SimulationStatistics.h>
#include <zorSDK/StepEventListener.h>
