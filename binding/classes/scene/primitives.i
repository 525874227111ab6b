// Text, axes, grids and simple bodies of lines and triangles.
%include <zorOSG/TextFunctions.h>
%include <zorOSG/SkySphere.h>
%include <zorOSG/CreateAxes.h>
%include <zorOSG/Primitives.h>
