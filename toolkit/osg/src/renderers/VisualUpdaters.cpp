#include <zorOSG/CreateVisual.h>

#include "ContactVisualUpdater.h"

namespace zorOSG {

namespace {

/** Makes the updater of a listener of one class; null for others. */
using UpdaterMaker = zor::ref_ptr<zorSDK::EventListener> (*)(zorSDK::EventListener& listener,
                                                             osg::Group& root);

template <class Listener, class Updater>
zor::ref_ptr<zorSDK::EventListener> makeUpdater(zorSDK::EventListener& listener, osg::Group& root) {
  auto* const known = dynamic_cast<Listener*>(&listener);
  return known ? zor::ref_ptr<zorSDK::EventListener>(new Updater(*known, root)) : nullptr;
}

/** A line for each class of listeners that have something to show; special classes before their bases. */
constexpr UpdaterMaker UPDATERS[] = {
    makeUpdater<zorSDK::ContactEventListener, ContactVisualUpdater>,
};

} // namespace

zorSDK::EventListener* createVisualUpdater(zorSDK::EventListener* listener, osg::Group* root) {
  if (!listener || !root)
    return nullptr;
  for (UpdaterMaker const make : UPDATERS)
    if (zor::ref_ptr<zorSDK::EventListener> updater = make(*listener, *root))
      return updater.release();
  return nullptr;
}

} // namespace zorOSG
