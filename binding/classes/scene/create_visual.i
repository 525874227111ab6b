// Visuals of simulation objects.
%include <zorOSG/CreateVisual.h>
