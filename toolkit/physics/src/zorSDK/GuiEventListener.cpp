#include <zorSDK/GuiEventListener.h>

#include <stdexcept>

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
  if (!matrix.isFinite() || matrix.getLinear().determinant() == 0)
    throw std::invalid_argument(
        "GuiEventListener::setInverseTransform: the matrix must be finite and have an inverse");
  m_inverseTransform = matrix;
}

zor::AffineMatrix4x4 const& GuiEventListener::getInverseTransform() const {
  return m_inverseTransform;
}

void GuiEventListener::setModKeyMask(unsigned int mask) {
  m_modKeyMask = mask;
}

unsigned int GuiEventListener::getModKeyMask() const {
  return m_modKeyMask;
}

} // namespace zorSDK
