#include "DisplayConnection.h"

#include <X11/Xlib.h>

namespace zorOSG {

DisplayConnection::DisplayConnection(char const* name) : m_display(XOpenDisplay(name)) {}

DisplayConnection::~DisplayConnection() {
  if (m_display)
    XCloseDisplay(static_cast<Display*>(m_display));
}

osg::Vec2i DisplayConnection::screenSize(int screen) const {
  auto* const display = static_cast<Display*>(m_display);
  if (!display || screen < 0 || screen >= XScreenCount(display))
    return {0, 0};
  return {XDisplayWidth(display, screen), XDisplayHeight(display, screen)};
}

} // namespace zorOSG
