#pragma once

#include <osg/Group>
#include <osg/NodeVisitor>

namespace zorBinding {

/** Says that a visitor, or a callback that it runs, is in Python code for as long as the scope lasts. */
class InVisitor {
public:
  explicit InVisitor(osg::NodeVisitor& visitor);
  InVisitor(InVisitor const&) = delete;
  InVisitor& operator=(InVisitor const&) = delete;
  ~InVisitor();
};

/**
 * A group walks over its own list of children: who changes the list from below takes it away from under its
 * feet.
 * \throws std::runtime_error if a visitor in Python code is below the group
 */
void checkChildrenFree(osg::Group const& group);

/** \return true if a node is another one or anywhere above it */
bool isAtOrAbove(osg::Node const& node, osg::Node const& below);

/** \throws std::runtime_error if a visitor in Python code is under way, for code that may change any group */
void checkNobodyVisits();

/** Takes a visitor's path back to where it was when an exception ends its way through the graph. */
class PathGuard {
public:
  explicit PathGuard(osg::NodeVisitor& visitor)
      : m_visitor(visitor), m_length(visitor.getNodePath().size()) {}
  PathGuard(PathGuard const&) = delete;
  PathGuard& operator=(PathGuard const&) = delete;
  ~PathGuard();

private:
  osg::NodeVisitor& m_visitor;
  std::size_t const m_length;
};

} // namespace zorBinding
