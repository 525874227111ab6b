#include "Extensions.h"

#include <osg/GLExtensions>
#include <osg/RenderInfo>
#include <osg/State>

namespace zorOSG {

osg::GLExtensions* supportedExtensions(osg::RenderInfo& renderInfo) {
  osg::GLExtensions* const extensions = renderInfo.getState()->get<osg::GLExtensions>();
  if (extensions->glRenderbufferStorageMultisampleCoverageNV &&
      !osg::isGLExtensionSupported(renderInfo.getContextID(), "GL_NV_framebuffer_multisample_coverage")) {
    extensions->glRenderbufferStorageMultisampleCoverageNV = nullptr;
  }
  return extensions;
}

} // namespace zorOSG
