// Every class that the module zorIO wraps; read by the modules that import it as well.
#pragma once

#include <zorIO/ArgumentParser.h>
#include <zorIO/Environment.h>
#include <zorIO/ResourcePath.h>
