// Colours for numbers.
%include <zorOSG/ScalarColorMap.h>
