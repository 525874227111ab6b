#pragma once

#include "TextOverlay.h"

#include <zorPython/ScriptError.h>

#include <cstddef>
#include <optional>
#include <string>

namespace zorOSG {

/// Shows over the picture what has gone wrong in scripts, for people who look at the window and not at the
/// terminal.
class ErrorPanel {
public:
  /** \return the node to put under the root of the viewer's graph */
  osg::Node* node() const { return m_overlay.node(); }

  /** \param width, height size of the window in pixels */
  void resize(int width, int height) { m_overlay.resize(width, height); }

  /** Shows the error of a script that has come since the last call, if one has; called once a frame. */
  void update();

  /** Shows why a scene could not be built: the error of a script that has come since the last call, or a
   * text. */
  void showFailure(std::string const& scene, std::string const& reason);

  /** Shows nothing any more; errors so far are not shown again. */
  void clear();

  bool isVisible() const { return m_overlay.isVisible(); }

private:
  /** \return the newest error of a script, unless it has been taken */
  std::optional<zorPython::ScriptError> takeNew();
  void show(std::string const& title, std::string const& text);

  TextOverlay m_overlay{TextOverlay::Corner::LOWER_LEFT};
  std::size_t m_numTaken = 0;
};

} // namespace zorOSG
