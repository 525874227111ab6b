#include "runtime/Traversal.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <stdexcept>
#include <vector>

namespace zorBinding {
namespace {

thread_local std::vector<osg::NodeVisitor*> visitorsInPython;

} // namespace

InVisitor::InVisitor(osg::NodeVisitor& visitor) {
  visitorsInPython.push_back(&visitor);
}

InVisitor::~InVisitor() {
  visitorsInPython.pop_back();
}

void checkChildrenFree(osg::Group const& group) {
  for (osg::NodeVisitor* visitor : visitorsInPython) {
    osg::NodePath const& path = visitor->getNodePath();
    if (path.empty())
      continue;
    // On the way down the last one is only visited: its children come later. On the way up, lists of parents
    // are walked over, which every child has.
    bool const isUpwards = visitor->getTraversalMode() == osg::NodeVisitor::TRAVERSE_PARENTS;
    if (isUpwards || std::find(path.begin(), path.end() - 1, &group) != path.end() - 1)
      throw std::runtime_error(
          "the children of '" + group.getName() +
          "' can't be changed by a visitor or callback below it: change them afterwards");
  }
}

bool isAtOrAbove(osg::Node const& node, osg::Node const& below) {
  // Nodes have several parents: each is visited once, for there may be very many paths.
  std::set<osg::Node const*> seen{&below};
  std::vector<osg::Node const*> open{&below};
  while (!open.empty()) {
    osg::Node const* const at = open.back();
    open.pop_back();
    if (at == &node)
      return true;
    for (osg::Group const* const parent : at->getParents())
      if (seen.insert(parent).second)
        open.push_back(parent);
  }
  return false;
}

void checkNobodyVisits() {
  if (!visitorsInPython.empty())
    throw std::runtime_error(
        "the scene can't be changed as a whole by a visitor or callback: do it afterwards");
}

PathGuard::~PathGuard() {
  osg::NodePath& path = m_visitor.getNodePath();
  if (path.size() <= m_length)
    return;
  auto const surplus = static_cast<std::ptrdiff_t>(path.size() - m_length);
  bool const isUpwards = m_visitor.getTraversalMode() == osg::NodeVisitor::TRAVERSE_PARENTS;
  path.erase(isUpwards ? path.begin() : path.end() - surplus,
             isUpwards ? path.begin() + surplus : path.end());
}

} // namespace zorBinding
