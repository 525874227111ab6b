// A shared texture.
%include <zorOSG/Texture2D.h>
