#pragma once

#include <osg/CullSettings>
#include <osg/Group>
#include <osg/Matrixd>
#include <osg/StateSet>

#include <functional>

namespace osgUtil {
class CullVisitor;
}

namespace zorOSG {

/** Makes what is below a node be drawn over the picture. \param order - higher ones over lower ones */
void setScreenState(osg::StateSet& state, int order);

/** While it lives, what is culled is seen flat, in coordinates of the screen, and does not count for near and
 * far planes. */
class ScreenScope {
public:
  /** \param projection - of the screen's coordinates \param placement - from those of what is culled */
  ScreenScope(osgUtil::CullVisitor& visitor, osg::Matrixd const& projection,
              osg::Matrixd const& placement = osg::Matrixd());
  ~ScreenScope();
  ScreenScope(ScreenScope const&) = delete;
  ScreenScope& operator=(ScreenScope const&) = delete;

private:
  osgUtil::CullVisitor& m_visitor;
  osg::CullSettings::ComputeNearFarMode m_nearFar;
  osg::CullSettings::CullingMode m_culling;
};

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
