#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zorSDK/EventListener.h>

namespace zorSDK {

/** Called for input events of the viewer that shows the simulation.
 *
 * Positions are in pixels with the origin in the lower left corner of the window. A method that returns true
 * has used the event up; later listeners and the camera do not see it.
 */
class GuiEventListener : public EventListener {
public:
  /** Kinds of events (bit mask). */
  enum ActivationMask : int {
    KEYBOARD = 1, /**< Keys. */
    MOUSE = 8,    /**< Mouse buttons and motion. */
    UPDATE = 16,  /**< Once in every frame. */
    ALL = 25      /**< All of them. */
  };

  /** Mouse buttons (bit mask). */
  enum MouseButtonMask : int {
    LEFT_BUTTON = 1,   ///< Left button.
    MIDDLE_BUTTON = 2, ///< Middle button or wheel.
    RIGHT_BUTTON = 4   ///< Right button.
  };

  /** What happened to a mouse button. */
  enum MouseState : int {
    DOWN = 0, ///< It went down.
    UP = 1    ///< It went up.
  };

  /** Modifier keys (bit mask). */
  enum ModKeyMask : int {
    MODKEY_LEFT_SHIFT = 0x0001,  ///< Left shift key.
    MODKEY_RIGHT_SHIFT = 0x0002, ///< Right shift key.
    MODKEY_LEFT_CTRL = 0x0004,   ///< Left control key.
    MODKEY_RIGHT_CTRL = 0x0008,  ///< Right control key.
    MODKEY_LEFT_ALT = 0x0010,    ///< Left alt key.
    MODKEY_RIGHT_ALT = 0x0020,   ///< Right alt key.
    MODKEY_SHIFT = 0x0003,       ///< Any shift key.
    MODKEY_CTRL = 0x000C,        ///< Any control key.
    MODKEY_ALT = 0x0030          ///< Any alt key.
  };

  /** Keys without a character; others are their character code. */
  enum KeySymbol : int {
    KEY_BackSpace = 0xFF08,
    KEY_Tab = 0xFF09,
    KEY_Return = 0xFF0D,
    KEY_Escape = 0xFF1B,
    KEY_Home = 0xFF50,
    KEY_Left = 0xFF51,
    KEY_Up = 0xFF52,
    KEY_Right = 0xFF53,
    KEY_Down = 0xFF54,
    KEY_Page_Up = 0xFF55,
    KEY_Page_Down = 0xFF56,
    KEY_End = 0xFF57,
    KEY_Insert = 0xFF63,
    KEY_F1 = 0xFFBE,
    KEY_F2 = 0xFFBF,
    KEY_F3 = 0xFFC0,
    KEY_F4 = 0xFFC1,
    KEY_F5 = 0xFFC2,
    KEY_F6 = 0xFFC3,
    KEY_F7 = 0xFFC4,
    KEY_F8 = 0xFFC5,
    KEY_F9 = 0xFFC6,
    KEY_F10 = 0xFFC7,
    KEY_F11 = 0xFFC8,
    KEY_F12 = 0xFFC9,
    KEY_Delete = 0xFFFF
  };

  /** \param mask Combination of the kinds of events for which the listener is called. */
  explicit GuiEventListener(int mask = ALL);

  /** Called when a key goes down or up.
   * \param key Character code or KeySymbol.
   * \param modKeyMask Modifier keys that are down, combination of ModKeyMask.
   * \param x Position of the mouse.
   * \param y Position of the mouse.
   * \param keydown True when the key went down.
   * \return True when the event is used up.
   */
  virtual bool keyboard(int key, unsigned int modKeyMask, float x, float y, bool keydown);
  /** Called when a mouse button goes down or up.
   * \param buttonMask The button.
   * \param state Down or up.
   * \param x Position of the mouse.
   * \param y Position of the mouse.
   * \return True when the event is used up.
   */
  virtual bool mouse(zorSDK::GuiEventListener::MouseButtonMask buttonMask,
                     zorSDK::GuiEventListener::MouseState state, float x, float y);
  /** Called when the mouse moves with no button down.
   * \return True when the event is used up. */
  virtual bool mouseMoved(float x, float y);
  /** Called when the mouse moves with buttons down.
   * \param buttonMask The buttons that are down.
   * \param x Position of the mouse.
   * \param y Position of the mouse.
   * \return True when the event is used up. */
  virtual bool mouseDragged(zorSDK::GuiEventListener::MouseButtonMask buttonMask, float x, float y);
  /** Called once in every frame.
   * \param x Position of the mouse.
   * \param y Position of the mouse. */
  virtual void update(float x, float y);
  /** Receives the transform that takes what is drawn back to simulation coordinates, when the viewer shows
   * the simulation transformed.
   * \param matrix From viewer to simulation coordinates.
   * \throws std::invalid_argument When it has no inverse. */
  virtual void setInverseTransform(zor::AffineMatrix4x4T<double> const& matrix);
  /** \return Transform from viewer to simulation coordinates. */
  zor::AffineMatrix4x4 const& getInverseTransform() const;

  /** Tells which modifier keys are down. Whoever hands events on calls this before each of them.
   * \param mask Combination of ModKeyMask. */
  void setModKeyMask(unsigned int mask);
  /** \return The modifier keys that were down at the last event, also for mouse events: combination of
   * ModKeyMask. */
  unsigned int getModKeyMask() const;

protected:
  ~GuiEventListener() override;

private:
  zor::AffineMatrix4x4 m_inverseTransform;
  unsigned int m_modKeyMask = 0;
};

} // namespace zorSDK
