#pragma once

#include <osg/GraphicsContext>

namespace zorOSG {

/** Stands in for a window system where there is none: every context that is asked for is an off-screen one.
 */
class EglWindowingSystem : public osg::GraphicsContext::WindowingSystemInterface {
public:
  EglWindowingSystem();

  unsigned int getNumScreens(osg::GraphicsContext::ScreenIdentifier const& screen) override;
  void getScreenSettings(osg::GraphicsContext::ScreenIdentifier const& screen,
                         osg::GraphicsContext::ScreenSettings& settings) override;
  void enumerateScreenSettings(osg::GraphicsContext::ScreenIdentifier const& screen,
                               osg::GraphicsContext::ScreenSettingsList& list) override;
  osg::GraphicsContext* createGraphicsContext(osg::GraphicsContext::Traits* traits) override;
};

} // namespace zorOSG
