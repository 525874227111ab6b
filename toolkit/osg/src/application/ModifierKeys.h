#pragma once

#include <zorSDK/GuiEventListener.h>

#include <osgGA/GUIEventAdapter>

namespace zorOSG {

/** \return the bit of zorSDK::GuiEventListener::ModKeyMask that a key stands for; 0 for other keys. */
inline unsigned int modifierBit(int key) {
  using Keys = osgGA::GUIEventAdapter;
  using Listener = zorSDK::GuiEventListener;
  switch (key) {
  case Keys::KEY_Shift_L:
    return Listener::MODKEY_LEFT_SHIFT;
  case Keys::KEY_Shift_R:
    return Listener::MODKEY_RIGHT_SHIFT;
  case Keys::KEY_Control_L:
    return Listener::MODKEY_LEFT_CTRL;
  case Keys::KEY_Control_R:
    return Listener::MODKEY_RIGHT_CTRL;
  case Keys::KEY_Alt_L:
    return Listener::MODKEY_LEFT_ALT;
  case Keys::KEY_Alt_R:
    return Listener::MODKEY_RIGHT_ALT;
  default:
    return 0;
  }
}

/** \return the mask of keys that are down after a key has gone down or up. */
inline unsigned int modifiersAfter(unsigned int mask, int key, bool down) {
  return down ? mask | modifierBit(key) : mask & ~modifierBit(key);
}

} // namespace zorOSG
