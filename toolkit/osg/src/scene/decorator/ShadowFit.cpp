#include "ShadowFit.h"

#include "Boxes.h"
#include "SceneSurvey.h"

#include <osg/Light>
#include <osgUtil/CullVisitor>

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

/** \return where the view looks; over the ground, unless it looks down at it */
osg::Vec3d viewDirection(ShadowTask const& task) {
  osg::Vec3d ahead = osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, -1.0), osg::Matrixd::inverse(task.view));
  ahead.normalize();
  if (std::hypot(ahead.x(), ahead.y()) > 0.2)
    ahead.z() = 0.0;
  ahead.normalize();
  return ahead;
}

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
    m_view.makeLookAt(eye, eye + direction, upFor(task, direction));
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
  /** A warped map runs along the view, from its near to its far end. */
  static osg::Vec3d upFor(ShadowTask const& task, osg::Vec3d const& direction) {
    if (task.isWarped && (viewDirection(task) ^ direction).length() > 0.05)
      return viewDirection(task);
    return std::abs(direction.z()) > 0.99 ? osg::Vec3d(0.0, 1.0, 0.0) : osg::Vec3d(0.0, 0.0, 1.0);
  }

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
  auto const [nearest, farthest] = visibleDepths(task);
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
    corners[2 * i] = atDepth(nearest) * toScene;
    corners[2 * i + 1] = atDepth(farthest) * toScene;
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

/** A scene that goes on behind the eye has no nearest depth; a warp for all of it would leave nothing for the
 * rest. */
constexpr double NEAREST_PART = 0.02;

/**
 * How far the point in which the rays of a warped map meet lies before the near end of the map, which reaches
 * from -1 to 1; smaller numbers move more texels to the near end. After the light-space perspective shadow
 * maps of Wimmer, Scherzer and Purgathofer (2004).
 */
double warpDistance(ShadowTask const& task, osg::Vec3d const& lightDirection, double mapLength) {
  DepthRange const depths = visibleDepths(task);
  double const sine = (viewDirection(task) ^ lightDirection).length();
  double const nearest = std::max(depths.nearest, NEAREST_PART * depths.farthest);
  double const distance = (nearest + std::sqrt(nearest * depths.farthest)) / std::max(sine, 1e-3);
  return std::max(2.0 * distance / mapLength, 0.05);
}

/** \return how much wider than its near end a warped map may be stretched without losing what the view shows
 */
double stretch(ShadowTask const& task, osg::Matrixd const& toClip, double distance) {
  double widest = 0.0;
  for (osg::Vec3d const& corner : visibleCorners(task)) {
    osg::Vec4d const at = osg::Vec4d(corner, 1.0) * toClip;
    double const w = at.y() + (1.0 + distance) * at.w();
    if (!(w > 0.0))
      return distance;
    widest = std::max(widest, std::abs(at.x()) / w);
  }
  return 1.0 / std::min(std::max(widest, 1e-6), 1.0 / distance);
}

/** Gives the near end of a map, its lower edge, more texels, at the cost of the far end. */
void warp(ShadowTask const& task, Bounds const& bounds, double distance, ShadowFit& fit) {
  osg::Vec3d const light =
      osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, -1.0), osg::Matrixd::inverse(fit.view));
  if ((viewDirection(task) ^ light).length() <= 0.05)
    return; // the view runs across no part of the map
  double const n = warpDistance(task, light, (bounds.vMax - bounds.vMin) * distance);
  double const across = stretch(task, fit.view * fit.projection, n);
  osg::Matrixd const matrix(across, 0.0, 0.0, 0.0,  //
                            0.0, n + 1.0, 0.0, 1.0, //
                            0.0, 0.0, n, 0.0,       //
                            0.0, 1.0, 0.0, n + 1.0);
  fit.projection = fit.projection * matrix;
  fit.texel = (bounds.uMax - bounds.uMin) / task.mapSize / across;
  fit.texelGrowth = (bounds.vMax - bounds.vMin) / task.mapSize / (n * (n + 2.0) * distance);
}

} // namespace

ShadowTask shadowTask(osgUtil::CullVisitor& visitor, osg::Light const& light, SceneSurvey const& survey) {
  return {osg::Vec4d(light.getPosition()), osg::Vec3d(light.getDirection()), survey.casters(), survey.scene(),
          *visitor.getModelViewMatrix(),   *visitor.getProjectionMatrix()};
}

DepthRange visibleDepths(ShadowTask const& task) {
  DepthRange seen{std::numeric_limits<double>::max(), 0.0};
  for (unsigned int i = 0; i < 8; ++i) {
    double const depth = -(task.scene.corner(i) * task.view).z();
    seen.nearest = std::min(seen.nearest, depth);
    seen.farthest = std::max(seen.farthest, depth);
  }
  seen.nearest = std::clamp(seen.nearest, task.depths.nearest, task.depths.farthest);
  seen.farthest = std::clamp(seen.farthest, task.depths.nearest, task.depths.farthest);
  return seen;
}

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
  if (task.isWarped)
    warp(task, bounds, distance, fit);
  return fit;
}

} // namespace zorOSG
