#include "NativeWindow.h"

// In a file of its own: the window system's headers define macros with everyday names.
#include <osgViewer/api/X11/GraphicsWindowX11>

#include <X11/Xutil.h>

#include <algorithm>
#include <cstdlib>

namespace zorOSG {

namespace {

constexpr double COMMON_DOTS_PER_INCH = 96;

} // namespace

std::intptr_t nativeWindowHandle(osg::GraphicsContext* context) {
  auto* const window = dynamic_cast<osgViewer::GraphicsWindowX11*>(context);
  return window ? static_cast<std::intptr_t>(window->getWindow()) : 0;
}

void setWindowResizable(osg::GraphicsContext* context, bool flag) {
  auto* const window = dynamic_cast<osgViewer::GraphicsWindowX11*>(context);
  if (!window || !window->getDisplayToUse())
    return;
  // Window managers keep a window at its size when the smallest and the largest are the same.
  XSizeHints hints{};
  long supplied = 0;
  XGetWMNormalHints(window->getDisplayToUse(), window->getWindow(), &hints, &supplied);
  hints.flags &= ~(PMinSize | PMaxSize);
  if (!flag) {
    hints.flags |= PMinSize | PMaxSize;
    hints.min_width = hints.max_width = window->getTraits()->width;
    hints.min_height = hints.max_height = window->getTraits()->height;
  }
  XSetWMNormalHints(window->getDisplayToUse(), window->getWindow(), &hints);
  XFlush(window->getDisplayToUse());
}

double screenPixelScale(osg::GraphicsContext* context) {
  auto* const window = dynamic_cast<osgViewer::GraphicsWindowX11*>(context);
  char const* const value =
      window && window->getDisplayToUse() ? XGetDefault(window->getDisplayToUse(), "Xft", "dpi") : nullptr;
  double const dotsPerInch = value ? std::atof(value) : 0;
  return dotsPerInch > COMMON_DOTS_PER_INCH ? std::min(dotsPerInch / COMMON_DOTS_PER_INCH, 8.0) : 1;
}

} // namespace zorOSG
