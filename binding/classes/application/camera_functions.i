// What a camera shows under the mouse, and a camera that follows a node.
%include <zorOSG/CameraFunctions.h>
