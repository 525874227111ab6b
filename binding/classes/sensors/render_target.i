// Rendering into images and textures.
ZOR_INNER_RESULT(zorOSG::RenderToImage::getImage)
ZOR_INNER_RESULT(zorOSG::RenderToTexture::getTexture)
%include <zorOSG/RenderTarget.h>
%include <zorOSG/RenderToImage.h>
%include <zorOSG/RenderToTexture.h>
