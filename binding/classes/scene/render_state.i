// How nodes look.
%include <zorOSG/RenderState.h>

%{
#include "runtime/Uniforms.h"
%}
%include "runtime/Uniforms.h"
%include <zorOSG/SmoothNormals.h>
