// A transform set by its parts.
ZOR_OSG_COUNTED(Transform, zorOSG::Transform)
%include <zorOSG/Transform.h>
