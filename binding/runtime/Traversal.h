#pragma once

#include <osg/Group>
#include <osg/NodeVisitor>
#include <osg/ref_ptr>

#include <cstddef>
#include <vector>

namespace zorBinding {

/**
 * Says that a visitor, or a callback that it runs, is in Python code for as long as the scope lasts. The
 * nodes on the visitor's way stay alive meanwhile.
 */
class InVisitor {
public:
  explicit InVisitor(osg::NodeVisitor& visitor);
  InVisitor(InVisitor const&) = delete;
  InVisitor& operator=(InVisitor const&) = delete;
  ~InVisitor();

  /**
   * To be called before the visitor goes on. Where checkChildrenFree() is not asked, a change shows here: the
   * toolkit takes the visuals of removed bodies out of the scene, for one.
   * \throws std::runtime_error if a list that the visitor is walking over has changed
   */
  void checkListsKept() const;

private:
  /** A list of children or parents, as it was. */
  struct Walked {
    osg::ref_ptr<osg::Node> node;
    void const* data;
    std::size_t size;
    bool operator==(Walked const&) const = default;
  };

  static Walked asItIs(osg::Node& node, bool isUpwards);

  osg::NodeVisitor& m_visitor;
  bool const m_isUpwards;
  std::vector<Walked> m_walked;
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
