#pragma once

#include "VisualAids.h"

#include <zorOSG/SceneDecorator.h>

#include <osg/BoundingSphere>
#include <osg/Group>
#include <osg/Switch>

namespace zorOSG {

/**
 * The application's part of the viewer's graph: root, scene decorator, switch, scene root with the current
 * scene, and the group of the application's own aids.
 */
class SceneGraph {
public:
  SceneGraph();

  /** Puts everything under another root. */
  void setRoot(osg::Group* root);

  osg::Group* root() const { return m_root.get(); }
  SceneDecorator* decorator() const { return m_decorator.get(); }
  osg::Switch* sceneSwitch() const { return m_switch.get(); }
  osg::Group* sceneRoot() const { return m_sceneRoot.get(); }
  osg::Group* aidsRoot() const { return m_aidsRoot.get(); }
  VisualAids& aids() { return m_aids; }
  VisualAids const& aids() const { return m_aids; }

  osg::Group* scene() const { return m_scene.get(); }

  /** Installs a scene in place of the present one; a scene that is in the graph already stays where it is. */
  void setScene(osg::Group* scene);

  /** Empties the scene root. */
  void clear();

  void setSceneVisible(bool flag);
  bool isSceneVisible() const { return m_visible; }

  /** \return bound of the scene's visuals */
  osg::BoundingSphere bound() const { return m_sceneRoot->getBound(); }

private:
  osg::ref_ptr<osg::Group> m_root;
  osg::ref_ptr<SceneDecorator> m_decorator;
  osg::ref_ptr<osg::Switch> m_switch;
  osg::ref_ptr<osg::Group> m_sceneRoot;
  osg::ref_ptr<osg::Group> m_aidsRoot;
  osg::ref_ptr<osg::Group> m_scene;
  VisualAids m_aids;
  bool m_visible = true;
};

} // namespace zorOSG
