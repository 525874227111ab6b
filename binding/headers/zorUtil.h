// Every class that the module zorUtil wraps; read by the modules that import it as well.
#pragma once

#include <zorUtil/CatmullRomSpline.h>
#include <zorUtil/NaturalSpline.h>
#include <zorUtil/Spline.h>
