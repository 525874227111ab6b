#pragma once

#include <zor/ref_ptr.h>
#include <zorSDK/GuiEventListener.h>

#include <osgGA/GUIEventHandler>

#include <exception>
#include <functional>
#include <utility>
#include <vector>

namespace zorSDK {
class Simulation;
}

namespace zorOSG {

/**
 * Hands the viewer's input events to the simulation's GuiEventListeners and, where none has used a key up, to
 * the application.
 *
 * What a listener throws does not pass through the viewer's traversal; it waits for rethrow().
 */
class InputAdapter : public osgGA::GUIEventHandler {
public:
  /// What the adapter asks of the application.
  struct Hooks {
    std::function<zorSDK::Simulation*()> simulation;
    std::function<bool(int key)> keyDown; ///< returns true if the key means something to the application
    std::function<void(int width, int height)> resized;
    std::function<zorSDK::GuiEventListener*()> last; ///< called after the simulation's listeners; may be null
  };

  explicit InputAdapter(Hooks hooks) : m_hooks(std::move(hooks)) {}

  using osgGA::GUIEventHandler::handle;
  bool handle(osgGA::GUIEventAdapter const& event, osgGA::GUIActionAdapter& action) override;

  /** Throws what a listener has thrown since the last call. */
  void rethrow();

  /** \return where the mouse was last, in pixels from the lower left corner */
  std::pair<float, float> mousePosition() const { return {m_mouse.x, m_mouse.y}; }

  /** The application goes away before the viewer does: events are ignored from now on. */
  void disconnect() { m_hooks = {}; }

protected:
  ~InputAdapter() override = default;

private:
  using Listener = zorSDK::GuiEventListener;
  using Listeners = std::vector<zor::ref_ptr<Listener>>;
  struct Position {
    float x = 0;
    float y = 0;
  };

  static Position pixelPosition(osgGA::GUIEventAdapter const& event, osgGA::GUIActionAdapter& action);
  void noteModifiers(osgGA::GUIEventAdapter const& event);
  bool dispatch(osgGA::GUIEventAdapter const& event, Position position);
  bool key(osgGA::GUIEventAdapter const& event, Position position, bool down);

  /** Calls listeners of a kind in order until one has used the event up. */
  template <class Call>
  bool offer(int mask, Call call);
  Listeners collectTargets(zorSDK::Simulation& simulation, int mask);

  Hooks m_hooks;
  Listeners m_spare; // empty, kept between events for its memory
  std::exception_ptr m_error;
  Position m_mouse;
  unsigned int m_modifiers = 0;
  unsigned int m_ownModifiers = 0; // of events that come from no window
};

} // namespace zorOSG
