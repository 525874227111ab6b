#include "Ancestry.h"

#include <stdexcept>
#include <string>
#include <unordered_set>
#include <vector>

namespace zorOSG {

// Not path by path: there may be very many of them.
bool isAnyAtOrAbove(osg::Node const& node, std::function<bool(osg::Node const&)> const& test) {
  osg::Node const* at = &node;
  for (; at->getNumParents() == 1; at = at->getParent(0))
    if (test(*at))
      return true;
  if (at->getNumParents() == 0)
    return test(*at);
  std::unordered_set<osg::Node const*> seen{at};
  std::vector<osg::Node const*> open{at};
  while (!open.empty()) {
    osg::Node const* const current = open.back();
    open.pop_back();
    if (test(*current))
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
