// A plane that cuts what is below it.
OSG_OWNED_CLASS(zorOSG, ClipPlane)
%include <zorOSG/ClipPlane.h>
