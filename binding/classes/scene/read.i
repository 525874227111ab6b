// Model files.
%include <zorOSG/ReadNode.h>
