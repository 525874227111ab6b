#pragma once

#include "PixelSource.h"

#include <osg/Viewport>

namespace zorOSG {

/** What a camera has drawn into the buffer that is bound. */
class ViewPixels : public PixelSource {
public:
  explicit ViewPixels(osg::Viewport const& area) : m_area(area) {}

  int width() const override { return static_cast<int>(m_area.width()); }
  int height() const override { return static_cast<int>(m_area.height()); }

  void read(osg::State&, GLenum format, GLenum type, void* to) const override {
    packRows();
    glReadPixels(static_cast<int>(m_area.x()), static_cast<int>(m_area.y()), width(), height(), format, type,
                 to);
  }

private:
  osg::Viewport const& m_area;
};

} // namespace zorOSG
