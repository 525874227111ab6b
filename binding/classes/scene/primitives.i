// Text, axes, grids and simple bodies of lines and triangles.
%include <zorOSG/Primitives.h>
%include <zorOSG/CreateAxes.h>
