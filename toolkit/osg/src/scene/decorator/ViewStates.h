#pragma once

#include <osg/Camera>
#include <osg/Matrixd>
#include <osg/StateSet>
#include <osg/Uniform>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <vector>

namespace zorOSG {

/** What the scene's program has to know of the view that it draws; one state set a view. */
class ViewStates {
public:
  /** \return state for all that is drawn in a view. \param sceneToEye - takes the decorator to the view */
  osg::StateSet* stateFor(osg::Camera* view, osg::Matrixd const& sceneToEye);

private:
  struct Entry {
    osg::observer_ptr<osg::Camera> view;
    osg::ref_ptr<osg::StateSet> state;
    osg::ref_ptr<osg::Uniform> eyeToScene;
  };

  Entry& entryOf(osg::Camera* view);

  std::vector<Entry> m_entries;
};

} // namespace zorOSG
