%module(directors="1", threads="1", docstring="Colours and what shapes look like.") zorRender

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import zor
%}

%{
#include "headers/zor.h"
#include "headers/zorRender.h"
%}

%include "shared/toolkit.i"
%import "zor.i"

ZOR_SHARED(zorRender::RenderData)
ZOR_SHARED(zorRender::RenderMaterial)

%ignore zorRender::Color::operator==;
%{
// Colours without alpha are opaque.
template <>
inline constexpr int zorBinding::FEWEST_COMPONENTS<zorRender::Color, 4> = 3;
%}
ZOR_VALUE(zorRender::Color, Color, float, 4)
%include <zorRender/Color.h>
ZOR_VALUE_VECTOR(ColorVector, zorRender::Color, 4)
namespace zorRender {
typedef zor::Vector<zorRender::Color> ColorVector;
}
%include <zorRender/RenderMaterial.h>
%include <zorRender/RenderData.h>
