#pragma once

#include <osg/BoundingBox>
#include <osg/Matrixd>
#include <osg/Vec4d>

#include <limits>
#include <vector>

namespace osg {
class Light;
}

namespace osgUtil {
class CullVisitor;
}

namespace zorOSG {

class SceneSurvey;

/** The part of the scene that a shadow map covers, seen from the light. */
struct ShadowFit {
  osg::Matrixd view;        ///< scene to light
  osg::Matrixd projection;  ///< light to the map's clip coordinates
  double texel = 0.0;       ///< size of a texel (m) in parts of w of its clip coordinates
  double texelGrowth = 0.0; ///< what w squared adds to it, where the map is warped (m)
  bool empty = true;        ///< nothing that casts shadows can be seen
};

/** Distances from the plane of the eye (m). */
struct DepthRange {
  double nearest = 0.0;
  double farthest = std::numeric_limits<double>::max();
};

/** What a shadow map has to cover. All in the coordinates of the decorator. */
struct ShadowTask {
  osg::Vec4d light;                              ///< homogeneous position of the light
  osg::Vec3d axis;                               ///< unit vector in which a point light mainly shines
  std::vector<osg::BoundingBoxd> const& casters; ///< boxes of what casts shadows
  osg::BoundingBoxd scene;                       ///< box of everything that is drawn
  osg::Matrixd view;                             ///< scene to eye of the view that shows the shadows
  osg::Matrixd projection;                       ///< that view's projection
  double softness = 0.0;                         ///< least size of a texel, in parts of the view's height
  int mapSize = 0;                               ///< texels along a side of the map
  DepthRange depths{};                           ///< the part of the view that is asked for
  bool isWarped = false;                         ///< with more texels where the view is near
};

/** \return what a visitor that culls a view asks for: a map without softness and size yet */
ShadowTask shadowTask(osgUtil::CullVisitor& visitor, osg::Light const& light, SceneSurvey const& survey);

/** \return the depths between which the view shows the scene */
DepthRange visibleDepths(ShadowTask const& task);

/**
 * Fits a shadow map: it covers what both casts shadows and can have one in the view, so that its texels are
 * not spent elsewhere. Its edges move in whole texels and its size in steps, so that the edges of shadows do
 * not crawl when camera or bodies move. A warped map cannot promise that.
 */
ShadowFit fitShadow(ShadowTask const& task);

} // namespace zorOSG
