// Rendering into images and textures.
%include <zorOSG/RenderTarget.h>
%include <zorOSG/RenderToImage.h>
%include <zorOSG/RenderToTexture.h>
