// Finding nodes again.
%include <zorOSG/Lookup.h>
