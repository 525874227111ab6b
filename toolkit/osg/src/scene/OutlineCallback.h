#pragma once

#include <osg/NodeCallback>
#include <osg/StateSet>
#include <osg/Vec4>
#include <osg/ref_ptr>

#include <mutex>
#include <vector>

namespace osgUtil {
class CullVisitor;
}

namespace zorOSG {

/**
 * Draws a line around what a node shows, while views cull it; the graph stays as it is. What the node shows
 * is marked in the stencil buffer, whether it is hidden or not, and drawn once more, wider by the line, where
 * there is no mark. A view without a stencil buffer gets the faces that face away, behind the node.
 */
class OutlineCallback : public osg::NodeCallback {
public:
  OutlineCallback(osg::Vec4 const& color, float width);

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;

private:
  /** State for views of one size. */
  struct Line {
    double width;
    double height;
    bool marked;
    int cuts;
    osg::ref_ptr<osg::StateSet> state;
  };

  void draw(osg::Node& node, osgUtil::CullVisitor& visitor);
  osg::ref_ptr<osg::StateSet> stateFor(osgUtil::CullVisitor& visitor, bool marked, int cuts);
  osg::ref_ptr<osg::StateSet> makeLineState(double width, double height, bool marked, int cuts) const;

  osg::Vec4 m_color;
  float m_width;
  int m_mark; ///< in the stencil buffer
  osg::ref_ptr<osg::StateSet> m_markState;
  std::mutex m_mutex; ///< views may be culled by threads of their own
  std::vector<Line> m_lines;
};

} // namespace zorOSG
