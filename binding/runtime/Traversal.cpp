#include "runtime/Traversal.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace zorBinding {
namespace {

thread_local std::vector<osg::NodeVisitor*> visitorsInPython;

/** Gives access to the list that groups walk over. */
struct ChildrenAccess : osg::Group {
  static constexpr auto list = &ChildrenAccess::_children;
};

/** \return where a visitor is, whose own list is not walked over yet; null if it is nowhere */
osg::Node const* currentNode(osg::NodeVisitor& visitor, bool isUpwards) {
  osg::NodePath const& path = visitor.getNodePath();
  return path.empty() ? nullptr : isUpwards ? path.front() : path.back();
}

} // namespace

InVisitor::InVisitor(osg::NodeVisitor& visitor)
    : m_visitor(visitor), m_isUpwards(visitor.getTraversalMode() == osg::NodeVisitor::TRAVERSE_PARENTS) {
  osg::Node const* const here = currentNode(visitor, m_isUpwards);
  for (osg::Node* const node : visitor.getNodePath())
    if (node != here && node->referenceCount() > 0) // else nobody can take it away
      m_walked.push_back(asItIs(*node, m_isUpwards));
  visitorsInPython.push_back(&visitor);
}

InVisitor::~InVisitor() {
  visitorsInPython.pop_back();
}

InVisitor::Walked InVisitor::asItIs(osg::Node& node, bool isUpwards) {
  osg::Group* const group = node.asGroup();
  if (isUpwards)
    return {&node, std::as_const(node).getParents().data(), node.getNumParents()};
  if (!group)
    return {&node, nullptr, 0};
  return {&node, (group->*ChildrenAccess::list).data(), group->getNumChildren()};
}

void InVisitor::checkListsKept() const {
  auto const changed = std::find_if(m_walked.begin(), m_walked.end(), [this](Walked const& walked) {
    return asItIs(*walked.node, m_isUpwards) != walked;
  });
  if (changed == m_walked.end())
    return;
  // What the visitor came through may be gone when it is used again. Where Python sent it on, PathGuard helps.
  if (std::count(visitorsInPython.begin(), visitorsInPython.end(), &m_visitor) == 1)
    m_visitor.getNodePath().clear();
  throw std::runtime_error("the " + std::string(m_isUpwards ? "parents" : "children") + " of '" +
                           changed->node->getName() +
                           "' were changed by a visitor or callback below it: change them afterwards");
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
