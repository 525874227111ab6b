// One light of the decorated scene.
%include <zorOSG/LightSource.h>
