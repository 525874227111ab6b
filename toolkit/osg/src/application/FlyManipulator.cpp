#include "FlyManipulator.h"

#include <osgGA/GUIEventAdapter>

#include <algorithm>

namespace zorOSG {

namespace {

using Event = osgGA::GUIEventAdapter;

constexpr std::array<int, 6> KEYS = {Event::KEY_Up,   Event::KEY_Down,    Event::KEY_Right,
                                     Event::KEY_Left, Event::KEY_Page_Up, Event::KEY_Page_Down};
constexpr double FAST = 4;
constexpr double LONGEST_FRAME = 0.1; // a pause must not become a leap

} // namespace

FlyManipulator::FlyManipulator(double speed) : m_speed(speed) {
  setAllowThrow(false);
  setAutoComputeHomePosition(false);
  setWheelMovement(0.3 * speed);
}

bool FlyManipulator::setHeld(int key, bool held) {
  auto const* const found = std::find(KEYS.begin(), KEYS.end(), key);
  if (found == KEYS.end())
    return false;
  m_held[static_cast<std::size_t>(found - KEYS.begin())] = held;
  return true;
}

bool FlyManipulator::handleKeyDown(Event const& event, osgGA::GUIActionAdapter& action) {
  return setHeld(event.getKey(), true) || osgGA::FirstPersonManipulator::handleKeyDown(event, action);
}

bool FlyManipulator::handleKeyUp(Event const& event, osgGA::GUIActionAdapter& action) {
  return setHeld(event.getKey(), false) || osgGA::FirstPersonManipulator::handleKeyUp(event, action);
}

/** \return 1 towards a direction, -1 away from it, 0 when neither or both keys are held */
double FlyManipulator::pull(std::size_t direction) const {
  return (m_held[direction] ? 1.0 : 0.0) - (m_held[direction + 1] ? 1.0 : 0.0);
}

bool FlyManipulator::handleFrame(Event const& event, osgGA::GUIActionAdapter& action) {
  double const elapsed = m_lastTime < 0 ? 0 : std::clamp(event.getTime() - m_lastTime, 0.0, LONGEST_FRAME);
  m_lastTime = event.getTime();
  bool const fast = (event.getModKeyMask() & Event::MODKEY_SHIFT) != 0;
  double const way = m_speed * elapsed * (fast ? FAST : 1);
  moveForward(pull(0) * way);
  moveRight(pull(2) * way);
  moveUp(pull(4) * way);
  return osgGA::FirstPersonManipulator::handleFrame(event, action);
}

} // namespace zorOSG
