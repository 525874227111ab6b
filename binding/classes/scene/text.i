// A text as a node.
ZOR_OSG_COUNTED(Text, zorOSG::Text)
%include <zorOSG/Text.h>
