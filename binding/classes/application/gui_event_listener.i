// Keyboard and mouse input of the viewer, for Python to override.
%feature("director") zorOSG::GuiEventListener;
%include <zorOSG/GuiEventListener.h>
