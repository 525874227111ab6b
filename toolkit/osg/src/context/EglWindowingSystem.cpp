#include "EglWindowingSystem.h"

#include "EglContext.h"

#include <osg/Notify>

#include <exception>

namespace zorOSG {

EglWindowingSystem::EglWindowingSystem() {
  setName("EGL");
}

unsigned int EglWindowingSystem::getNumScreens(osg::GraphicsContext::ScreenIdentifier const&) {
  return 1;
}

void EglWindowingSystem::getScreenSettings(osg::GraphicsContext::ScreenIdentifier const&,
                                           osg::GraphicsContext::ScreenSettings& settings) {
  settings = osg::GraphicsContext::ScreenSettings(1280, 720, 60.0, 24);
}

void EglWindowingSystem::enumerateScreenSettings(osg::GraphicsContext::ScreenIdentifier const& screen,
                                                 osg::GraphicsContext::ScreenSettingsList& list) {
  list.resize(1);
  getScreenSettings(screen, list.front());
}

/** The scene graph asks through this interface and expects null on failure, not an exception. */
osg::GraphicsContext* EglWindowingSystem::createGraphicsContext(osg::GraphicsContext::Traits* traits) {
  try {
    return new EglContext(traits);
  } catch (std::exception const& error) {
    OSG_WARN << error.what() << std::endl;
    return nullptr;
  }
}

} // namespace zorOSG
