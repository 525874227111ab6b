#pragma once

#include "Background.h"
#include "Hud.h"
#include "LightRig.h"
#include "SceneSurvey.h"
#include "ShadowTechnique.h"
#include "ViewStates.h"

#include <zorOSG/SceneDecorator.h>

#include <osg/ref_ptr>

#include <memory>
#include <mutex>
#include <vector>

namespace zorOSG {

/** A group without being a child of its parent: bounds and callbacks of its nodes reach the decorator. */
class AttachedGroup : public osg::Group {
public:
  void attach(osg::Group& parent) { addParent(&parent); }
  void detach(osg::Group& parent) { removeParent(&parent); }
};

/** What a scene decorator is made of, and how it is drawn. */
class SceneDecorator::Parts {
public:
  Parts(SceneDecorator& decorator, int width, int height, int enabledLights);
  ~Parts();
  Parts(Parts const&) = delete;
  Parts& operator=(Parts const&) = delete;

  /** Draws the decorator into the view that is being culled. */
  void cull(osgUtil::CullVisitor& visitor);

  /** Visits everything with a visitor that is not for drawing. */
  void visit(osg::NodeVisitor& visitor);

  void releaseGLObjects(osg::State* state) const;

  void setProgram(bool enable, bool override);
  void setShadowMethod(ShadowMethod method);
  bool castsShadows() const;

  SceneDecorator& decorator;
  LightRig lights;
  Background background;
  Hud hud;
  osg::ref_ptr<AttachedGroup> nonShadowed;
  osg::ref_ptr<osg::StateSet> state;
  bool enabled = true;
  bool shadowsEnabled = true;
  bool shaderEnabled = true;
  ShadowMethod shadowMethod = SOFT_SHADOWMAP;
  unsigned int shadowLight = 0;

private:
  void makeState();
  void surveyOnce(unsigned int frame);
  void cullScene(osgUtil::CullVisitor& visitor);
  void cullShadowed(osgUtil::CullVisitor& visitor);
  ShadowTechnique& techniqueFor(osg::Camera& view);
  std::unique_ptr<ShadowTechnique> makeTechnique(osg::Camera& view);

  osg::ref_ptr<osg::Program> m_program;
  std::mutex m_mutex; ///< views may be culled by threads of their own
  SceneSurvey m_survey;
  unsigned int m_surveyedFrame = ~0u;
  std::vector<std::unique_ptr<ShadowTechnique>> m_techniques; ///< one a view
  ViewStates m_viewStates;
};

} // namespace zorOSG
