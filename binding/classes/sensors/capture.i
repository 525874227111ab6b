// Images and video from rendered frames.
%ignore zorOSG::VideoFFMPEGPipeCapture::CodecHash;
// Overrides of what the base already declares.
%ignore zorOSG::ImageCapture::startCapture;
%ignore zorOSG::VideoFFMPEGPipeCapture::startCapture;
%ignore zorOSG::VideoFFMPEGPipeCapture::writeImage;
%include <zorOSG/ImageCaptureBase.h>
%include <zorOSG/ImageCapture.h>
// The table of constants has those of colour maps, which come later as a class, before those of videos.
%init %{
  {
    int value = 0;
    for (char const* name : {"RAINBOW", "COOLWARM", "VIRIDIS", "INFERNO", "PLASMA", "GRAYSCALE", "BLUE_WHITE_RED", "CIVIDIS", "BONE", "COPPER", "AFMHOT"})
      SWIG_Python_SetConstant(d, (std::string("ScalarColorMap_") + name).c_str(), PyLong_FromLong(value++));
  }
%}
%include <zorOSG/VideoFFMPEGPipeCapture.h>
