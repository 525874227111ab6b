#include "Ancestry.h"

#include <stdexcept>
#include <string>
#include <unordered_set>
#include <vector>

namespace zorOSG {

// Each node is visited once, for there may be very many paths.
bool isOnAnyPathBelow(osg::Node const* node, osg::Node const* top) {
  std::unordered_set<osg::Node const*> seen{node};
  std::vector<osg::Node const*> open{node};
  while (!open.empty()) {
    osg::Node const* const current = open.back();
    open.pop_back();
    if (current == top)
      return true;
    for (unsigned int i = 0; i < current->getNumParents(); ++i)
      if (seen.insert(current->getParent(i)).second)
        open.push_back(current->getParent(i));
  }
  return false;
}

void requireNoCircle(char const* function, osg::Group const* parent, osg::Node const* child) {
  if (child && isAtOrBelow(parent, child))
    throw std::invalid_argument(std::string(function) + ": a node can't be its own descendant");
}

} // namespace zorOSG
