#include <zorOSG/OffscreenContext.h>

#include "CurrentContextKeeper.h"
#include "EglContext.h"
#include "EglWindowingSystem.h"

#include <osg/GL>

#include <cstdlib>
#include <mutex>
#include <stdexcept>

namespace zorOSG {

namespace {

std::string text(GLenum name) {
  GLubyte const* const value = glGetString(name);
  return value ? reinterpret_cast<char const*>(value) : "unknown";
}

std::string describe(osg::GraphicsContext& context) {
  bool const wasCurrent = context.isCurrent();
  if (!wasCurrent && !context.makeCurrent())
    return "a graphics context that cannot be made current";
  auto const* const offscreen = dynamic_cast<EglContext const*>(&context);
  std::string const line = (offscreen ? "off screen, " + offscreen->getPath() : std::string("window")) +
                           "; " + text(GL_VENDOR) + "; " + text(GL_RENDERER) + "; OpenGL " + text(GL_VERSION);
  if (!wasCurrent)
    context.releaseContext();
  return line;
}

} // namespace

osg::ref_ptr<osg::GraphicsContext> createOffscreenContext(int width, int height, unsigned int samples) {
  osg::ref_ptr<osg::GraphicsContext::Traits> const traits = new osg::GraphicsContext::Traits;
  traits->x = 0;
  traits->y = 0;
  traits->width = width;
  traits->height = height;
  traits->alpha = 8;
  traits->stencil = 8;
  traits->samples = samples;
  traits->pbuffer = true;
  traits->doubleBuffer = false;
  traits->vsync = false;
  return createOffscreenContext(traits.get());
}

osg::ref_ptr<osg::GraphicsContext> createOffscreenContext(osg::GraphicsContext::Traits* traits) {
  osg::ref_ptr<osg::GraphicsContext> const context = new EglContext(traits);
  if (!context->realize())
    throw std::runtime_error("Off-screen context: it could not be realized");
  return context;
}

void useOffscreenContexts() {
  static std::once_flag once;
  std::call_once(once, [] {
    auto* const systems = osg::GraphicsContext::getWindowingSystemInterfaces().get();
    auto const others = systems->getInterfaces();
    for (auto const& other : others)
      systems->removeWindowingSystemInterface(other.get());
    systems->addWindowingSystemInterface(new EglWindowingSystem);
  });
}

bool hasDisplay() {
  char const* const display = std::getenv("DISPLAY");
  return display && *display;
}

std::string describeGraphics(osg::GraphicsContext* context) {
  if (context)
    return describe(*context);
  CurrentContextKeeper const keeper;
  try {
    osg::ref_ptr<osg::GraphicsContext> const own = createOffscreenContext(16, 16);
    return describe(*own);
  } catch (std::exception const& error) {
    return error.what();
  }
}

} // namespace zorOSG
