#pragma once

#include <osg/CopyOp>
#include <osg/Node>
#include <osg/StateSet>

namespace zorOSG {

/**
 * State of visuals of one colour: they share it, so that ten thousand red bodies are one change of state and
 * not ten thousand. It must not be changed; unsharedStateSet() gives a node its own. Its copies are plain
 * state sets. For C++ only: Python gets a state set that may be changed.
 */
class SharedState : public osg::StateSet {
protected:
  ~SharedState() override = default;
};

/**
 * \param node - a node
 * \return the node's state set, which may be changed: a shared one was replaced by a copy; null if it has
 * none
 */
inline osg::StateSet* unsharedStateSet(osg::Node& node) {
  if (auto const* const shared = dynamic_cast<SharedState*>(node.getStateSet()))
    node.setStateSet(new osg::StateSet(*shared, osg::CopyOp::DEEP_COPY_ALL));
  return node.getStateSet();
}

/** As unsharedStateSet, with a new state set for a node that has none. */
inline osg::StateSet& unsharedOrNewStateSet(osg::Node& node) {
  osg::StateSet* const state = unsharedStateSet(node);
  return state ? *state : *node.getOrCreateStateSet();
}

} // namespace zorOSG
