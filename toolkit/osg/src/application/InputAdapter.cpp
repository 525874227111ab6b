#include "InputAdapter.h"

#include "ModifierKeys.h"

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
  return {static_cast<float>(viewport->x() + x * viewport->width()),
          static_cast<float>(viewport->y() + (down ? 1 - y : y) * viewport->height())};
}

template <class Call>
bool InputAdapter::offer(int mask, Call call) {
  zorSDK::Simulation* const simulation = m_hooks.simulation();
  if (!simulation)
    return false;
  Listeners targets = collectTargets(*simulation, mask);
  bool used = false;
  for (auto const& target : targets) {
    bool const isThere = target->getSimulation() == simulation || (m_hooks.last && target == m_hooks.last());
    if (!isThere)
      continue;
    target->setModKeyMask(m_modifiers);
    used = call(*target);
    if (used)
      break;
  }
  targets.clear(); // listeners die when a script lets go of them
  m_spare.swap(targets);
  return used;
}

/** A listener may add and remove listeners, so the round goes over a list of its own. */
InputAdapter::Listeners InputAdapter::collectTargets(zorSDK::Simulation& simulation, int mask) {
  Listeners targets = std::move(m_spare);
  auto const take = [&](zorSDK::EventListener* listener) {
    if (!listener->getEnable() || !(listener->getMask() & mask))
      return;
    if (auto* const target = dynamic_cast<Listener*>(listener))
      targets.emplace_back(target);
  };
  for (auto const& listener : simulation.getListeners())
    take(listener.get());
  Listener* const last = m_hooks.last ? m_hooks.last() : nullptr;
  if (last && last->getSimulation() != &simulation)
    take(last);
  return targets;
}

/** Windows know which keys are down. Events that a program makes itself tell only of keys that go down and
 * up. */
void InputAdapter::noteModifiers(Event const& event) {
  bool const isKey = event.getEventType() == Event::KEYDOWN || event.getEventType() == Event::KEYUP;
  if (isKey && !event.getGraphicsContext())
    m_ownModifiers = modifiersAfter(m_ownModifiers, event.getKey(), event.getEventType() == Event::KEYDOWN);
  m_modifiers = event.getModKeyMask() | m_ownModifiers;
}

bool InputAdapter::dispatch(Event const& event, Position position) {
  auto const [x, y] = position;
  m_mouse = position;
  noteModifiers(event);
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
  bool const used = offer(Listener::KEYBOARD, [&](Listener& to) {
    return to.keyboard(key, m_modifiers, position.x, position.y, down);
  });
  // Quitting is never taken away by a listener; only the application may refuse it.
  if (!down || (used && key != Event::KEY_Escape))
    return used;
  return m_hooks.keyDown(key) || used;
}

} // namespace zorOSG
