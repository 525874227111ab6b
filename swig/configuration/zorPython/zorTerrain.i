%module(directors="1", threads="1", docstring="Terrain: what soil is made of.") zorTerrain

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorTerrain.h"
%}

%include "shared/toolkit.i"
%import "zor.i"

ZOR_SHARED(zorTerrain::TerrainMaterial)

%include <zorTerrain/TerrainMaterial.h>
