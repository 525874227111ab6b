#include <zorSDK/GuiEventListener.h>

namespace zorSDK {

GuiEventListener::GuiEventListener(int mask) : EventListener(mask) {}

GuiEventListener::~GuiEventListener() = default;

bool GuiEventListener::keyboard(int, unsigned int, float, float, bool) {
  return false;
}

bool GuiEventListener::mouse(MouseButtonMask, MouseState, float, float) {
  return false;
}

bool GuiEventListener::mouseMoved(float, float) {
  return false;
}

bool GuiEventListener::mouseDragged(MouseButtonMask, float, float) {
  return false;
}

void GuiEventListener::update(float, float) {}

void GuiEventListener::setInverseTransform(zor::AffineMatrix4x4T<double> const& matrix) {
  m_inverseTransform = matrix;
}

zor::AffineMatrix4x4 const& GuiEventListener::getInverseTransform() const {
  return m_inverseTransform;
}

} // namespace zorSDK
