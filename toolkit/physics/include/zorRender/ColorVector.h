#pragma once

#include <zor/Vector.h>
#include <zorRender/Color.h>

namespace zorRender {

/** Colours in a row, for example those of a colour range. */
typedef zor::Vector<zorRender::Color> ColorVector;

} // namespace zorRender
