#include "InputAdapter.h"

#include <zorSDK/Simulation.h>

#include <osg/Camera>
#include <osg/View>
#include <osgGA/GUIEventAdapter>

#include <utility>

namespace zorOSG {

using Event = osgGA::GUIEventAdapter;

bool InputAdapter::handle(Event const& event, osgGA::GUIActionAdapter& action) {
  if (!m_hooks.simulation || m_error || event.getHandled())
    return false;
  try {
    return dispatch(event, pixelPosition(event, action));
  } catch (...) {
    m_error = std::current_exception();
    return true;
  }
}

void InputAdapter::rethrow() {
  if (m_error)
    std::rethrow_exception(std::exchange(m_error, nullptr));
}

InputAdapter::Position InputAdapter::pixelPosition(Event const& event, osgGA::GUIActionAdapter& action) {
  osg::View* const view = action.asView();
  osg::Viewport const* const viewport = view ? view->getCamera()->getViewport() : nullptr;
  float const width = event.getXmax() - event.getXmin();
  float const height = event.getYmax() - event.getYmin();
  if (!viewport || width <= 0 || height <= 0)
    return {event.getX(), event.getY()};
  float const x = (event.getX() - event.getXmin()) / width;
  float const y = (event.getY() - event.getYmin()) / height;
  bool const down = event.getMouseYOrientation() == Event::Y_INCREASING_DOWNWARDS;
  return {x * static_cast<float>(viewport->width()),
          (down ? 1 - y : y) * static_cast<float>(viewport->height())};
}

template <class Call>
bool InputAdapter::offer(int mask, Call call) {
  zorSDK::Simulation* const simulation = m_hooks.simulation();
  if (!simulation)
    return false;
  // A listener may add and remove listeners, so the round goes over a list of its own.
  m_targets.clear();
  for (auto const& listener : simulation->getListeners()) {
    if (!listener->getEnable() || !(listener->getMask() & mask))
      continue;
    if (auto* const target = dynamic_cast<Listener*>(listener.get()))
      m_targets.emplace_back(target);
  }
  for (auto const& target : m_targets)
    if (target->getSimulation() == simulation && call(*target))
      return true;
  return false;
}

bool InputAdapter::dispatch(Event const& event, Position position) {
  auto const [x, y] = position;
  auto const button = static_cast<Listener::MouseButtonMask>(
      (event.getEventType() == Event::DRAG ? event.getButtonMask() : event.getButton()) & 7);
  switch (event.getEventType()) {
  case Event::KEYDOWN:
  case Event::KEYUP:
    return key(event, position, event.getEventType() == Event::KEYDOWN);
  case Event::PUSH:
  case Event::DOUBLECLICK:
    return offer(Listener::MOUSE, [=](Listener& to) { return to.mouse(button, Listener::DOWN, x, y); });
  case Event::RELEASE:
    return offer(Listener::MOUSE, [=](Listener& to) { return to.mouse(button, Listener::UP, x, y); });
  case Event::MOVE:
    return offer(Listener::MOUSE, [=](Listener& to) { return to.mouseMoved(x, y); });
  case Event::DRAG:
    return offer(Listener::MOUSE, [=](Listener& to) { return to.mouseDragged(button, x, y); });
  case Event::FRAME:
    return offer(Listener::UPDATE, [=](Listener& to) {
      to.update(x, y);
      return false;
    });
  case Event::RESIZE:
    m_hooks.resized(event.getWindowWidth(), event.getWindowHeight());
    return false;
  default:
    return false;
  }
}

bool InputAdapter::key(Event const& event, Position position, bool down) {
  int const key = event.getKey();
  unsigned const modifiers = event.getModKeyMask();
  bool const used = offer(Listener::KEYBOARD, [&](Listener& to) {
    return to.keyboard(key, modifiers, position.x, position.y, down);
  });
  // Quitting is never taken away by a listener; only the application may refuse it.
  if (!down || (used && key != Event::KEY_Escape))
    return used;
  return m_hooks.keyDown(key) || used;
}

} // namespace zorOSG
