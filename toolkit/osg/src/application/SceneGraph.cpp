#include "SceneGraph.h"

#include "CommandLine.h"
#include "scene/Ancestry.h"

#include <zorOSG/ExampleApplication.h>

namespace zorOSG {

namespace {

using App = ExampleApplication;

} // namespace

SceneGraph::SceneGraph()
    : m_root(new osg::Group), m_decorator(new SceneDecorator(CommandLine().width, CommandLine().height)),
      m_switch(new osg::Switch), m_sceneRoot(new osg::Group), m_aidsRoot(new osg::Group) {
  m_root->setName("Root");
  m_switch->setName("SceneSwitch");
  m_sceneRoot->setName("SceneRoot");
  m_aidsRoot->setName("AidsRoot");
  m_switch->setNodeMask(App::MAIN_SCENE_MASK | App::OSG_RENDER_MASK | App::CASTS_SHADOWS_MASK |
                        App::RECIEVES_SHADOWS_MASK);
  m_aidsRoot->setNodeMask(App::DEBUG_RENDER_MASK);
  m_switch->addChild(m_sceneRoot);
  m_aidsRoot->addChild(m_aids.node());
  m_decorator->addChild(m_switch);
  m_decorator->getNonShadowedScene()->addChild(m_aidsRoot);
  m_root->addChild(m_decorator);
}

void SceneGraph::setRoot(osg::Group* root) {
  requireNoCircle("initScene", root, m_decorator);
  osg::ref_ptr<osg::Group> const previous = m_root;
  m_root = root;
  previous->removeChild(m_decorator);
  m_root->addChild(m_decorator);
}

void SceneGraph::setScene(osg::Group* scene) {
  osg::ref_ptr<osg::Group> const next = scene;
  if (next == m_scene)
    return;
  bool const isShown = next && isAtOrBelow(next.get(), m_root.get());
  if (!isShown)
    requireNoCircle("setScene", m_sceneRoot, next);
  if (m_scene == m_sceneRoot)
    m_sceneRoot->removeChildren(0, m_sceneRoot->getNumChildren());
  else if (m_scene)
    m_sceneRoot->removeChild(m_scene);
  m_scene = next;
  if (m_scene && !isShown)
    m_sceneRoot->addChild(m_scene);
}

void SceneGraph::clear() {
  m_scene = nullptr;
  m_sceneRoot->removeChildren(0, m_sceneRoot->getNumChildren());
}

void SceneGraph::setSceneVisible(bool flag) {
  m_visible = flag;
  if (flag)
    m_switch->setAllChildrenOn();
  else
    m_switch->setAllChildrenOff();
}

} // namespace zorOSG
