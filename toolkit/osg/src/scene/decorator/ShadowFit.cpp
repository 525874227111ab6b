#include "ShadowFit.h"

#include "Boxes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>

namespace zorOSG {

namespace {

/** Bounds in the plane of the map, with the range of distances from the light. */
struct Bounds {
  double uMin = std::numeric_limits<double>::max();
  double uMax = std::numeric_limits<double>::lowest();
  double vMin = std::numeric_limits<double>::max();
  double vMax = std::numeric_limits<double>::lowest();
  double near = std::numeric_limits<double>::max();
  double far = std::numeric_limits<double>::lowest();

  void add(osg::Vec3d const& p) {
    uMin = std::min(uMin, p.x());
    uMax = std::max(uMax, p.x());
    vMin = std::min(vMin, p.y());
    vMax = std::max(vMax, p.y());
    near = std::min(near, p.z());
    far = std::max(far, p.z());
  }

  void cut(Bounds const& other) {
    uMin = std::max(uMin, other.uMin);
    uMax = std::min(uMax, other.uMax);
    vMin = std::max(vMin, other.vMin);
    vMax = std::min(vMax, other.vMax);
  }

  bool empty() const { return !(uMax > uMin && vMax > vMin); }
};

/** Widest half opening of the map of a point light, as the tangent of the angle. */
constexpr double WIDEST = 3.0;

/** A light as a camera: parallel rays for a light without a place, else rays from its place. */
class LightView {
public:
  /** The light looks along its axis while the target is well in view, as a view that turns moves the texels.
   */
  LightView(ShadowTask const& task, osg::Vec3d const& target) : m_parallel(task.light.w() == 0.0) {
    osg::Vec3d const place(task.light.x(), task.light.y(), task.light.z());
    osg::Vec3d const eye = m_parallel ? osg::Vec3d() : place / task.light.w();
    osg::Vec3d direction = m_parallel ? -place : target - eye;
    if (direction.normalize() == 0.0)
      direction = {0.0, 0.0, -1.0};
    if (!m_parallel && task.axis * direction > 0.7)
      direction = task.axis;
    osg::Vec3d const up =
        std::abs(direction.z()) > 0.99 ? osg::Vec3d(0.0, 1.0, 0.0) : osg::Vec3d(0.0, 0.0, 1.0);
    m_view.makeLookAt(eye, eye + direction, up);
  }

  bool isParallel() const { return m_parallel; }
  osg::Matrixd const& matrix() const { return m_view; }

  /** \return place in the map's plane and distance; false for a point that the light cannot look at */
  bool project(osg::Vec3d const& point, osg::Vec3d& result) const {
    osg::Vec3d const seen = point * m_view;
    double const distance = -seen.z();
    if (m_parallel)
      result = {seen.x(), seen.y(), distance};
    else if (distance > 0.0)
      result = {seen.x() / distance, seen.y() / distance, distance};
    return m_parallel || distance > 0.0;
  }

  bool add(osg::BoundingBoxd const& box, Bounds& bounds) const {
    bool all = true;
    for (unsigned int i = 0; i < 8; ++i) {
      osg::Vec3d at;
      if (project(box.corner(i), at))
        bounds.add(at);
      else
        all = false;
    }
    return all;
  }

private:
  bool m_parallel;
  osg::Matrixd m_view;
};

osg::BoundingBoxd boxOfCasters(ShadowTask const& task) {
  osg::BoundingBoxd box;
  for (osg::BoundingBoxd const& caster : task.casters)
    if (!isGround(caster, task.scene))
      box.expandBy(caster);
  return box;
}

Bounds boundsOfCasters(ShadowTask const& task, LightView const& light) {
  Bounds bounds;
  bool all = true;
  for (osg::BoundingBoxd const& caster : task.casters)
    if (!isGround(caster, task.scene))
      all = light.add(caster, bounds) && all;
  if (!all || !light.isParallel()) {
    Bounds widest;
    widest.uMin = widest.vMin = -WIDEST;
    widest.uMax = widest.vMax = WIDEST;
    if (all)
      bounds.cut(widest);
    else
      std::tie(bounds.uMin, bounds.uMax, bounds.vMin, bounds.vMax) =
          std::tuple(-WIDEST, WIDEST, -WIDEST, WIDEST);
  }
  return bounds;
}

/** Corners of the part of the view that holds the scene: four rays, cut at the scene's depths. */
std::array<osg::Vec3d, 8> visibleCorners(ShadowTask const& task) {
  double nearest = std::numeric_limits<double>::max();
  double farthest = std::numeric_limits<double>::lowest();
  for (unsigned int i = 0; i < 8; ++i) {
    double const depth = -(task.scene.corner(i) * task.view).z();
    nearest = std::min(nearest, depth);
    farthest = std::max(farthest, depth);
  }
  osg::Matrixd const toEye = osg::Matrixd::inverse(task.projection);
  osg::Matrixd const toScene = osg::Matrixd::inverse(task.view);
  std::array<osg::Vec3d, 8> corners;
  for (unsigned int i = 0; i < 4; ++i) {
    osg::Vec3d const at((i & 1) ? 1.0 : -1.0, (i & 2) ? 1.0 : -1.0, 0.0);
    osg::Vec3d const front = (at + osg::Vec3d(0.0, 0.0, -1.0)) * toEye;
    osg::Vec3d const back = (at + osg::Vec3d(0.0, 0.0, 0.5)) * toEye;
    // The planes of the projection are not final while culling, but the rays through them are.
    auto const atDepth = [&](double depth) {
      double const part = (depth + front.z()) / (front.z() - back.z());
      return front + (back - front) * part;
    };
    corners[2 * i] = atDepth(std::max(nearest, 0.0)) * toScene;
    corners[2 * i + 1] = atDepth(std::max(farthest, 0.0)) * toScene;
  }
  return corners;
}

/** Limits the bounds to what the view shows, where the light can look at all of that. */
void cutByView(ShadowTask const& task, LightView const& light, Bounds& bounds) {
  Bounds visible;
  for (osg::Vec3d const& corner : visibleCorners(task)) {
    osg::Vec3d at;
    if (!corner.valid() || !light.project(corner, at))
      return;
    visible.add(at);
  }
  bounds.cut(visible);
}

/** \return height of what the view shows, at the distance of a point (m) */
double viewHeight(ShadowTask const& task, osg::Vec3d const& point) {
  double const distance = std::abs((point * task.view).z());
  bool const perspective = task.projection(3, 3) == 0.0;
  return 2.0 * (perspective ? distance : 1.0) / std::abs(task.projection(1, 1));
}

/** Makes a range at least so large. */
void widen(double& low, double& high, double least) {
  double const more = std::max(0.0, 0.5 * (least - (high - low)));
  low -= more;
  high += more;
}

/** Rounds a range up to a size from a coarse ladder and moves its lower end to a multiple of a texel. */
void steady(double& low, double& high, int mapSize) {
  double const margin = 8.0 / mapSize * (high - low);
  double const size = high - low + 2.0 * margin;
  double const rung = std::exp2(std::floor(std::log2(size)) - 3.0);
  double const stepped = (std::floor(size / rung) + 1.0) * rung;
  double const texel = stepped / mapSize;
  low = std::floor((0.5 * (low + high) - 0.5 * stepped) / texel) * texel;
  high = low + stepped;
}

osg::Matrixd projectionOf(LightView const& light, Bounds const& bounds) {
  double const slack = 0.01 * (bounds.far - bounds.near) + 1e-6 * std::abs(bounds.far) + 1e-6;
  double const far = bounds.far + slack;
  double const near = bounds.near - slack;
  if (light.isParallel())
    return osg::Matrixd::ortho(bounds.uMin, bounds.uMax, bounds.vMin, bounds.vMax, near, far);
  double const cut = std::max(near, 1e-3 * far);
  return osg::Matrixd::frustum(bounds.uMin * cut, bounds.uMax * cut, bounds.vMin * cut, bounds.vMax * cut,
                               cut, far);
}

} // namespace

ShadowFit fitShadow(ShadowTask const& task) {
  ShadowFit fit;
  osg::BoundingBoxd const casters = boxOfCasters(task);
  if (!casters.valid())
    return fit;
  LightView const light(task, casters.center());
  Bounds bounds = boundsOfCasters(task, light);
  cutByView(task, light, bounds);
  if (bounds.empty())
    return fit;
  double const distance = light.isParallel() ? 1.0 : 0.5 * (bounds.near + bounds.far);
  double const least = task.softness * viewHeight(task, casters.center()) / distance * task.mapSize;
  widen(bounds.uMin, bounds.uMax, least);
  widen(bounds.vMin, bounds.vMax, least);
  steady(bounds.uMin, bounds.uMax, task.mapSize);
  steady(bounds.vMin, bounds.vMax, task.mapSize);
  fit.view = light.matrix();
  fit.projection = projectionOf(light, bounds);
  fit.texel = std::max(bounds.uMax - bounds.uMin, bounds.vMax - bounds.vMin) / task.mapSize;
  fit.empty = false;
  return fit;
}

} // namespace zorOSG
