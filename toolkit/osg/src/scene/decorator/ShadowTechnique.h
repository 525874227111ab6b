#pragma once

#include <osg/Camera>
#include <osg/Light>
#include <osg/StateSet>
#include <osg/observer_ptr>

#include <functional>

namespace osgUtil {
class CullVisitor;
}

namespace zorOSG {

class SceneSurvey;

/** A way to make the shadows of one view. */
class ShadowTechnique {
public:
  /** Visits everything that may cast or receive shadows. */
  using Content = std::function<void(osg::NodeVisitor&)>;

  /** \param view - the camera whose picture the shadows are for */
  explicit ShadowTechnique(osg::Camera& view) : m_view(&view) {}
  virtual ~ShadowTechnique() = default;
  ShadowTechnique(ShadowTechnique const&) = delete;
  ShadowTechnique& operator=(ShadowTechnique const&) = delete;

  /** \return true if it was made for this camera */
  bool belongsTo(osg::Camera const& view) const { return m_view.get() == &view; }

  /** \return true if the camera it was made for is gone */
  bool isStale() const { return !m_view.valid(); }

  /**
   * Called before the scene is culled for the view: adds what has to be drawn before it.
   * \return state for the scene, borrowed; null if it is drawn without shadows at first, or has none
   */
  virtual osg::StateSet* begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                               SceneSurvey const& survey) = 0;

  /** Called after the scene was culled: adds what has to be drawn after it. */
  virtual void end(osgUtil::CullVisitor& /*visitor*/, osg::Light const& /*light*/,
                   SceneSurvey const& /*survey*/) {}

  virtual void releaseGLObjects(osg::State* state) const = 0;

private:
  osg::observer_ptr<osg::Camera> m_view;
};

/** Tells the scene's program which light casts shadows, and by what. */
void setShadowDefines(osg::StateSet& state, osg::Light const& light, std::string const& kind);

} // namespace zorOSG
