// Model files and stored simulations.
%include <zorOSG/ReadNode.h>
%include <zorOSG/ReadFile.h>
