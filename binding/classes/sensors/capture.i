// Images and video from rendered frames.
%ignore zorOSG::VideoFFMPEGPipeCapture::CodecHash;
// Overrides of what the base already declares.
%ignore zorOSG::ImageCapture::startCapture;
%ignore zorOSG::VideoFFMPEGPipeCapture::startCapture;
%ignore zorOSG::VideoFFMPEGPipeCapture::writeImage;
%include <zorOSG/ImageCaptureBase.h>
%include <zorOSG/ImageCapture.h>
%include <zorOSG/VideoFFMPEGPipeCapture.h>
