// How lidar points are coloured, for Python to override.
%feature("director") zorOSG::LidarOutputRendererColorFunctionCallback;
ZOR_STANDARD(zorOSG::LidarOutputRendererColorFunctionCallback::getLidarPointColor, zorOSG::LidarOutputRendererColorFunctionCallback::getLidarPointColor(intensity))
%include <zorOSG/LidarOutputRendererColorFunctionCallback.h>
