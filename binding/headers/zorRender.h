// Every class that the module zorRender wraps; read by the modules that import it as well.
#pragma once

#include <zor/Vec4.h>
#include <zorRender/Color.h>
#include <zorRender/ColorVector.h>
#include <zorRender/RenderData.h>
#include <zorRender/RenderMaterial.h>
