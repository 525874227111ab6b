#include <zorSDK/EventListener.h>

namespace zorSDK {

EventListener::EventListener(int mask, std::string const& name) : Component(name), m_mask(mask) {}

EventListener::~EventListener() = default;

void EventListener::setMask(int mask) {
  m_mask = mask;
}

int EventListener::getMask() const {
  return m_mask;
}

void EventListener::setEnable(bool enable) {
  m_enabled = enable;
}

bool EventListener::getEnable() const {
  return m_enabled;
}

void EventListener::addNotification() {}

void EventListener::removeNotification() {}

Simulation* EventListener::getSimulation() const {
  return m_simulation;
}

} // namespace zorSDK
