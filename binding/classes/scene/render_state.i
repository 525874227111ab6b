// How nodes look.
%include <zorOSG/RenderState.h>
