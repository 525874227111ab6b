// A viewer in the OpenGL context of a host. What it lends to a script outlives it.
%include <zorOSG/EmbeddedGLWindow.h>
