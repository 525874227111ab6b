#pragma once

#include "KeyMap.h"
#include "OverlayPanel.h"

namespace zorOSG {

/// Help over the picture: sections in two columns.
class HelpOverlay : public OverlayPanel {
public:
  HelpOverlay() : OverlayPanel(Corner::UPPER_LEFT) {}

  void show(std::vector<HelpSection> const& sections);

private:
  /** \return the lower right corner of what was written */
  osg::Vec2 writeColumn(std::vector<HelpSection> const& sections, std::size_t first, std::size_t last,
                        float left);
};

} // namespace zorOSG
