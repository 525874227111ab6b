#pragma once

#include <osg/Group>
#include <osg/Matrixd>

#include <functional>

namespace zorOSG {

/**
 * A group drawn flat over the view that is being culled, in coordinates of the screen. It draws into the
 * render stage of that view, so it appears in windows and render targets alike, and it does not take part in
 * finding near and far planes.
 */
class ScreenLayer : public osg::Group {
public:
  /** Makes a projection for a view of the given width and height in pixels. */
  using Projection = std::function<osg::Matrixd(double width, double height)>;

  /**
   * \param projection - the layer's coordinates
   * \param order - layers of a higher order are drawn over those of a lower one
   */
  ScreenLayer(Projection projection, int order);

  void traverse(osg::NodeVisitor& visitor) override;

private:
  Projection m_projection;
};

} // namespace zorOSG
