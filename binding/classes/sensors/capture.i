// Images and video from rendered frames.
%ignore zorOSG::VideoFFMPEGPipeCapture::CodecHash;
%include <zorOSG/ImageCaptureBase.h>
%include <zorOSG/ImageCapture.h>
%include <zorOSG/VideoFFMPEGPipeCapture.h>
