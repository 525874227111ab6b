#pragma once

#include "ShadowFit.h"

#include <osg/Camera>
#include <osg/Light>
#include <osg/StateSet>
#include <osg/Texture2D>
#include <osg/Uniform>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <functional>

namespace osgUtil {
class CullVisitor;
}

namespace zorOSG {

class SceneSurvey;

/** The shadow map of one view: a depth pass from the light, and the state that shows the result in the scene.
 */
class ShadowMap {
public:
  /** Visits everything that may cast shadows. */
  using Content = std::function<void(osg::NodeVisitor&)>;

  /**
   * \param view - the camera whose picture the shadows are for
   * \param content - visited with the depth pass
   * \param soft - soft edges or sharp ones
   */
  ShadowMap(osg::Camera& view, Content content, bool soft);

  /** \return true if the map was made for this camera */
  bool belongsTo(osg::Camera const& view) const { return m_view.get() == &view; }

  /** \return true if the camera it was made for is gone */
  bool isStale() const { return !m_view.valid(); }

  /**
   * Adds the depth pass to the view that is being culled.
   * \return state for the scene, borrowed; null if nothing in the view can have a shadow
   */
  osg::StateSet* cull(osgUtil::CullVisitor& visitor, osg::Light const& light, SceneSurvey const& survey);

  void releaseGLObjects(osg::State* state) const;

private:
  void makeTexture();
  void makeCamera(Content content);
  void makeState();
  void cullDepthPass(osgUtil::CullVisitor& visitor, ShadowFit const& fit, osg::BoundingBoxd const& scene);

  osg::observer_ptr<osg::Camera> m_view;
  bool m_soft;
  int m_size;
  osg::ref_ptr<osg::Camera> m_camera;
  osg::ref_ptr<osg::Texture2D> m_map;
  osg::ref_ptr<osg::StateSet> m_state;
  osg::ref_ptr<osg::Uniform> m_matrix;
  osg::ref_ptr<osg::Uniform> m_offset;
};

} // namespace zorOSG
