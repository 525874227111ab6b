// The node of one collision geometry.
ZOR_OSG_COUNTED(GeometryNode, zorOSG::GeometryNode)
%include <zorOSG/GeometryNode.h>
