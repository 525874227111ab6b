// Reference functions of scene-graph classes, for scripts that count by hand.
%include <zorOSG/NodeReference.h>
