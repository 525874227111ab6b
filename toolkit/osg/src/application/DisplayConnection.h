#pragma once

#include <osg/Vec2i>

namespace zorOSG {

/**
 * A connection to the X server of a display. Held while a window is opened: a server whose last client leaves
 * starts anew, and takes the windows that are just being made along.
 */
class DisplayConnection {
public:
  /** \param name - the display's name; null for that of the environment */
  explicit DisplayConnection(char const* name);
  ~DisplayConnection();
  DisplayConnection(DisplayConnection const&) = delete;
  DisplayConnection& operator=(DisplayConnection const&) = delete;

  bool isOpen() const { return m_display != nullptr; }

  /** \return width and height of a screen in pixels; zero for a screen that does not exist */
  osg::Vec2i screenSize(int screen) const;

private:
  void* m_display; // the library's type, whose header has macros with everyday names
};

} // namespace zorOSG
