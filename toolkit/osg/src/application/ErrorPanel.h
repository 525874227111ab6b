#pragma once

#include "OverlayPanel.h"

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
  osg::Node* node() const { return m_panel.node(); }

  /** \param width, height size of the window in pixels \param pixelScale as of OverlayPanel::resize() */
  void resize(int width, int height, double pixelScale) { m_panel.resize(width, height, pixelScale); }

  /** Shows the error of a script that has come since the last call, if one has; called once a frame. */
  void update();

  /** Shows why a scene could not be built: the error of a script that has come since the last call, or a
   * text. */
  void showFailure(std::string const& scene, std::string const& reason);

  /** Shows nothing any more; errors so far are not shown again. */
  void clear();

private:
  /** \return the newest error of a script, unless it has been taken */
  std::optional<zorPython::ScriptError> takeNew();
  void show(std::string const& title, std::string const& hint, std::string const& text);

  OverlayPanel m_panel{OverlayPanel::Corner::LOWER_LEFT};
  std::size_t m_numTaken = 0;
};

} // namespace zorOSG
