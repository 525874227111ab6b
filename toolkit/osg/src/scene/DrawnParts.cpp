#include "DrawnParts.h"

#include <algorithm>

#include <osg/Transform>

#include <zorOSG/ClipPlane.h>
#include <zorOSG/GeometryNode.h>

#include "Ancestry.h"
#include "ClipNumbers.h"
#include "Convert.h"

namespace zorOSG {

namespace {

/** A ray in the coordinates of some node, and what is left of it. */
struct CutRay {
  osg::Vec3d start, end;
  RayPart part{};

  bool isEmpty() const { return part.begin >= part.end; }

  void moveBy(osg::Matrixd const& matrix) {
    start = start * matrix;
    end = end * matrix;
  }

  void cut(zor::Plane const& plane) {
    double const first = plane.distance(zor::Vec3(start.x(), start.y(), start.z()));
    double const last = plane.distance(zor::Vec3(end.x(), end.y(), end.z()));
    if (first < 0.0 && last < 0.0)
      part.end = part.begin;
    else if (first < 0.0)
      part.begin = std::max(part.begin, first / (first - last));
    else if (last < 0.0)
      part.end = std::min(part.end, first / (first - last));
  }
};

/** Follows all ways up from a node. There may be very many; what is not followed counts as not cut. */
class WayUp {
public:
  explicit WayUp(osg::Node const* top) : m_top(top) {}

  /** \param ray - in the coordinates of the node's parents */
  void climb(osg::Node const& node, CutRay const& ray) {
    constexpr unsigned int MOST_STEPS = 10000;
    if (ray.isEmpty())
      return;
    if (&node == m_top || (!m_top && node.getNumParents() == 0) || ++m_steps > MOST_STEPS) {
      parts.push_back(ray.part);
      return;
    }
    for (unsigned int i = 0; i < node.getNumParents() && m_steps <= MOST_STEPS; ++i) {
      osg::Node const& parent = *node.getParent(i);
      climb(parent, above(parent, ray));
    }
  }

  std::vector<RayPart> parts;

private:
  static CutRay above(osg::Node const& node, CutRay ray) {
    if (auto const* const transform = node.asTransform()) {
      osg::Matrixd matrix;
      transform->computeLocalToWorldMatrix(matrix, nullptr);
      ray.moveBy(matrix);
    } else if (auto const* const clip = dynamic_cast<ClipPlane const*>(&node); clip && clip->getEnable()) {
      ray.cut(clip->getPlane());
    }
    return ray;
  }

  osg::Node const* m_top;
  unsigned int m_steps = 0;
};

} // namespace

std::vector<RayPart> drawnParts(zorCollide::Geometry const& geometry, zor::Vec3 const& start,
                                zor::Vec3 const& end, osg::Node const* top) {
  if (!ClipNumbers::instance().areAnyTaken())
    return {RayPart{}};
  WayUp way(top);
  bool isShown = false;
  for (GeometryNode const* node = firstFollowing(geometry); node; node = nextFollowing(*node)) {
    if (top && !isAtOrBelow(node, top))
      continue;
    isShown = true;
    way.climb(*node, {toOsg(start), toOsg(end)});
  }
  bool const isWhole = std::find(way.parts.begin(), way.parts.end(), RayPart{}) != way.parts.end();
  return !isShown || isWhole ? std::vector{RayPart{}} : way.parts;
}

} // namespace zorOSG
