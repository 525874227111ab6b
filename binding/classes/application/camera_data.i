// Pose and projection of a camera as a value.
%include <zorOSG/CameraData.h>
