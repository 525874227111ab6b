// Every class that the module zorTerrain wraps; read by the modules that import it as well.
#pragma once

#include <zorTerrain/TerrainMaterial.h>
