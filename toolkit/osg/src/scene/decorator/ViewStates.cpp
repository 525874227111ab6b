#include "ViewStates.h"

#include <algorithm>

namespace zorOSG {

ViewStates::Entry& ViewStates::entryOf(osg::Camera* view) {
  auto const found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [view](Entry const& entry) { return entry.view.get() == view; });
  if (found != m_entries.end())
    return *found;
  std::erase_if(m_entries, [](Entry const& entry) { return !entry.view.valid(); });
  Entry entry{view, new osg::StateSet, new osg::Uniform(osg::Uniform::FLOAT_MAT4, "zor_eyeToScene")};
  entry.state->setDataVariance(osg::Object::DYNAMIC);
  entry.state->addUniform(entry.eyeToScene);
  m_entries.push_back(entry);
  return m_entries.back();
}

osg::StateSet* ViewStates::stateFor(osg::Camera* view, osg::Matrixd const& sceneToEye) {
  Entry& entry = entryOf(view);
  entry.eyeToScene->set(osg::Matrixf(osg::Matrixd::inverse(sceneToEye)));
  return entry.state;
}

} // namespace zorOSG
