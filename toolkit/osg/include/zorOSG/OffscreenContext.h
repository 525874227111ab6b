#pragma once

#include <osg/GraphicsContext>
#include <osg/ref_ptr>

#include <string>

namespace zorOSG {

/**
 * Creates an OpenGL context that needs no display: a pixel buffer on EGL, with a compatibility profile.
 * The context is made current and released like any other; put it into a camera with setGraphicsContext().
 * \param width - width of the pixel buffer (pixels), 1 to 16384
 * \param height - height of the pixel buffer (pixels), 1 to 16384
 * \param samples - samples per pixel; 0 for none. Fewer, down to none, are used where the driver has no more.
 * \return the context, realized
 * \throws std::invalid_argument for a size outside that range
 * \throws std::runtime_error if no way to a context works; says what EGL answered on each
 */
osg::ref_ptr<osg::GraphicsContext> createOffscreenContext(int width, int height, unsigned int samples = 0);

/**
 * As above, with everything that the traits say: size, samples, bits and a context to share objects with,
 * which must have come from this function too.
 * \param traits - kept by the context
 */
osg::ref_ptr<osg::GraphicsContext> createOffscreenContext(osg::GraphicsContext::Traits* traits);

/**
 * Makes off-screen contexts the only kind that the process creates from now on, so that no code tries to open
 * a display. Does nothing on a second call.
 */
void useOffscreenContexts();

/** \return true if the environment names a display to open windows on */
bool hasDisplay();

/**
 * Describes how the current or a new off-screen context draws.
 * \param context - the context to describe, made current for it; null for a small off-screen one
 * \return one line: the path to the context, vendor, renderer and OpenGL version; what failed where no
 * context can be had
 */
std::string describeGraphics(osg::GraphicsContext* context = nullptr);

} // namespace zorOSG
