#include "NativeWindow.h"

// In a file of its own: the window system's headers define macros with everyday names.
#include <osgViewer/api/X11/GraphicsWindowX11>

namespace zorOSG {

std::intptr_t nativeWindowHandle(osg::GraphicsContext* context) {
  auto* const window = dynamic_cast<osgViewer::GraphicsWindowX11*>(context);
  return window ? static_cast<std::intptr_t>(window->getWindow()) : 0;
}

} // namespace zorOSG
