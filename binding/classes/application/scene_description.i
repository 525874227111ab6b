// What an application can build.
%include <zorOSG/SceneDescription.h>
