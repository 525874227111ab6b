#pragma once

#include <zorRender/RenderData.h>

namespace zorCollide {

/** The render data of a shape. */
typedef zorRender::RenderData RenderData;

} // namespace zorCollide
