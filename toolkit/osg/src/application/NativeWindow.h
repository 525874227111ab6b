#pragma once

#include <osg/GraphicsContext>

#include <cstdint>

namespace zorOSG {

/** \return the window system's handle of a window; 0 if the context is none. */
std::intptr_t nativeWindowHandle(osg::GraphicsContext* context);

/** Lets the window's user change its size, or not; does nothing where the context is no window. */
void setWindowResizable(osg::GraphicsContext* context, bool flag);

/** \return pixels of the screen for one of a screen of common resolution, as the desktop's settings have it;
 * 1 where the context is no window */
double screenPixelScale(osg::GraphicsContext* context);

} // namespace zorOSG
