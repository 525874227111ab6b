#include "ContextId.h"

#include <osg/GraphicsContext>

#include <mutex>
#include <set>

namespace zorOSG {

unsigned int freshContextId() {
  static std::mutex mutex;
  static std::set<unsigned int> used;
  std::lock_guard const lock(mutex);
  unsigned int id = osg::GraphicsContext::createNewContextID();
  while (!used.insert(id).second)
    id = osg::GraphicsContext::createNewContextID(); // what is skipped stays taken
  return id;
}

} // namespace zorOSG
