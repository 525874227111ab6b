#include "ViewerHost.h"

#include "DisplayConnection.h"
#include "context/EdgeSmoothing.h"

#include <zorOSG/OffscreenContext.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace zorOSG {

namespace {

constexpr double FIELD_OF_VIEW = 45;

osg::ref_ptr<osg::GraphicsContext::Traits> makeTraits(ViewerHost::Settings const& settings, int samples) {
  osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
  traits->readDISPLAY();
  traits->setScreenIdentifier(std::getenv("DISPLAY"));
  traits->x = settings.x;
  traits->y = settings.y;
  traits->width = settings.width;
  traits->height = settings.height;
  traits->windowName = settings.title;
  traits->windowDecoration = true;
  traits->supportsResize = true;
  traits->doubleBuffer = true;
  traits->stencil = 8; // for shadow volumes
  traits->vsync = settings.vsync;
  traits->samples = static_cast<unsigned int>(samples);
  traits->sampleBuffers = samples > 0 ? 1 : 0;
  return traits;
}

void fillScreen(osg::GraphicsContext::Traits& traits, osg::Vec2i const& screen) {
  traits.x = traits.y = 0;
  traits.width = screen.x();
  traits.height = screen.y();
  traits.windowDecoration = false;
}

/** Past the log, whose level would hide it: how a run draws is what its user has to know. */
void report(std::string const& message) {
  std::cerr << "zorOSG: " << message << std::endl;
}

/** \return a window, or null with the reason why there is none. */
osg::ref_ptr<osg::GraphicsContext> openWindow(ViewerHost::Settings const& settings, std::string& reason) {
  if (!hasDisplay()) {
    reason = "DISPLAY is not set";
    return nullptr;
  }
  reason = "the display '" + std::string(std::getenv("DISPLAY")) + "' cannot be opened";
  DisplayConnection const connection(std::getenv("DISPLAY"));
  if (!connection.isOpen())
    return nullptr;
  osg::ref_ptr<osg::GraphicsContext::Traits> traits = makeTraits(settings, settings.samples);
  auto* const system = osg::GraphicsContext::getWindowingSystemInterface();
  if (!system || system->getNumScreens(*traits) == 0)
    return nullptr;
  // A server whose last client leaves starts anew and refuses others meanwhile, so the last try is repeated.
  for (int const samples : {settings.samples, 0, 0, 0, 0}) {
    traits = makeTraits(settings, samples);
    if (settings.fullScreen) // a display that names no screen leaves the number at -1
      fillScreen(*traits, connection.screenSize(std::max(traits->screenNum, 0)));
    osg::ref_ptr<osg::GraphicsContext> context = osg::GraphicsContext::createGraphicsContext(traits.get());
    if (context && context->valid())
      return context;
    if (samples == 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  reason += " for OpenGL";
  return nullptr;
}

osg::ref_ptr<osg::GraphicsContext> openSurface(ViewerHost::Settings const& settings) {
  std::string reason = "as asked for";
  osg::ref_ptr<osg::GraphicsContext> context = settings.window ? openWindow(settings, reason) : nullptr;
  if (context) {
    report("Drawing in a window on display " + std::string(std::getenv("DISPLAY")));
    return context;
  }
  try {
    context =
        createOffscreenContext(settings.width, settings.height, static_cast<unsigned>(settings.samples));
  } catch (std::exception const& error) {
    throw std::runtime_error("nothing to draw on: no window (" + reason + ") and no off-screen buffer (" +
                             error.what() + ")");
  }
  report("Drawing off screen (" + reason + "): " + describeGraphics(context.get()));
  return context;
}

} // namespace

ViewerHost::ViewerHost(Settings const& settings)
    : m_viewer(new osgViewer::Viewer), m_context(openSurface(settings)) {
  // Bound to one processor, everything started later would share it: the renderer's threads, the video
  // encoder.
  m_viewer->setUseConfigureAffinity(false);
  m_viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
  m_viewer->setLightingMode(osg::View::NO_LIGHT); // the scene decorator brings its own
  m_viewer->setKeyEventSetsDone(0);
  auto* const camera = m_viewer->getCamera();
  osg::GraphicsContext::Traits const* const traits = m_context->getTraits();
  camera->setGraphicsContext(m_context.get());
  if (!window()) // events that a program makes itself are in pixels from the upper left, as those of windows
    m_viewer->getEventQueue()->getCurrentEventState()->setWindowRectangle(0, 0, traits->width,
                                                                          traits->height);
  camera->setViewport(0, 0, traits->width, traits->height);
  camera->setProjectionMatrixAsPerspective(FIELD_OF_VIEW, static_cast<double>(traits->width) / traits->height,
                                           0.1, 10000.0);
  if (!window() && traits->samples == 0 && settings.samples > 0) {
    smoothEdges(*camera);
    return;
  }
  GLenum const buffer = traits->doubleBuffer ? GL_BACK : GL_FRONT;
  camera->setDrawBuffer(buffer);
  camera->setReadBuffer(buffer);
}

ViewerHost::~ViewerHost() {
  m_viewer->setDone(true);
  m_viewer->stopThreading();
  m_viewer->setSceneData(nullptr);
}

osgViewer::GraphicsWindow* ViewerHost::window() const {
  return dynamic_cast<osgViewer::GraphicsWindow*>(m_context.get());
}

osg::Vec2i ViewerHost::size() const {
  osg::GraphicsContext::Traits const* const traits = m_context->getTraits();
  return {traits->width, traits->height};
}

} // namespace zorOSG
