// Picking and dragging with the mouse.
%include <zorOSG/PickHandler.h>
