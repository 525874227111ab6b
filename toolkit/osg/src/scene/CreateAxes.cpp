#include <zorOSG/CreateAxes.h>

#include <osg/Geode>

#include <zor/observer_ptr.h>
#include <zorOSG/Lookup.h>

#include "Checks.h"
#include "Convert.h"
#include "FollowCallback.h"
#include "LineBuilder.h"

namespace zorOSG {

namespace {

osg::ref_ptr<osg::Geometry> makeAxisLines(float scale, float width) {
  LineBuilder lines;
  lines.segment({}, {scale, 0.0f, 0.0f}, {0.90f, 0.10f, 0.10f, 1.0f});
  lines.segment({}, {0.0f, scale, 0.0f}, {0.10f, 0.70f, 0.15f, 1.0f});
  lines.segment({}, {0.0f, 0.0f, scale}, {0.15f, 0.30f, 0.95f, 1.0f});
  return lines.finish(width);
}

zor::AffineMatrix4x4 placeIn(zor::Frame const* frame) {
  return frame ? frame->getLocalMatrix() : zor::AffineMatrix4x4();
}

osg::MatrixTransform* addAxes(osg::Group& parent, zor::AffineMatrix4x4 const& place, float scale,
                              float width) {
  requireFinite("createAxes", "transform", place);
  osg::ref_ptr<osg::MatrixTransform> const axes = createAxes(scale, width);
  axes->setMatrix(toOsg(place));
  parent.addChild(axes);
  return axes.get();
}

/** Axes under root at a place relative to something that moves. */
template <class Target, class PlaceOf>
osg::MatrixTransform* addFollowingAxes(Target* target, zor::AffineMatrix4x4 const& relative, osg::Group& root,
                                       float scale, float width, PlaceOf placeOf) {
  osg::MatrixTransform* const axes = addAxes(root, relative, scale, width);
  letFollow(*axes,
            [observed = zor::observer_ptr<Target>(target), relative, placeOf](zor::AffineMatrix4x4& place) {
              Target* const alive = observed.get();
              if (alive)
                place = relative * placeOf(*alive);
              return alive != nullptr;
            });
  return axes;
}

} // namespace

osg::MatrixTransform* createAxes(float scale, float width) {
  requirePositive("createAxes", "scale", scale);
  requirePositive("createAxes", "width", width);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(makeAxisLines(scale, width));
  osg::ref_ptr<osg::MatrixTransform> axes = new osg::MatrixTransform;
  axes->setName("axes");
  axes->addChild(geode);
  return axes.release();
}

osg::MatrixTransform* createAxes(zorCollide::Geometry* geometry, zor::Frame* frame, osg::Group* root,
                                 float scale, float width) {
  return createAxes(geometry, placeIn(frame), root, scale, width);
}

osg::MatrixTransform* createAxes(zorCollide::Geometry* geometry, zor::AffineMatrix4x4 const& relTransform,
                                 osg::Group* root, float scale, float width) {
  osg::Group* const parent = geometry ? findGeometryNode(geometry, root) : root;
  return parent ? addAxes(*parent, relTransform, scale, width) : nullptr;
}

osg::MatrixTransform* createAxes(zor::RigidBody* body, zor::Frame* frame, osg::Group* root, float scale,
                                 float width) {
  return createAxes(body, placeIn(frame), root, scale, width);
}

osg::MatrixTransform* createAxes(zor::RigidBody* body, zor::AffineMatrix4x4 const& relTransform,
                                 osg::Group* root, float scale, float width) {
  if (!root)
    return nullptr;
  if (!body)
    return addAxes(*root, relTransform, scale, width);
  return addFollowingAxes(body, relTransform, *root, scale, width,
                          [](zor::RigidBody const& target) { return target.getTransform(); });
}

osg::MatrixTransform* createAxes(zor::AffineMatrix4x4 const& transform, osg::Group* root, float scale,
                                 float width) {
  return root ? addAxes(*root, transform, scale, width) : nullptr;
}

osg::MatrixTransform* createAxes(zor::Constraint* constraint, osg::Group* root, float scale, float width) {
  if (!constraint || !root)
    return nullptr;
  return addFollowingAxes(constraint, zor::AffineMatrix4x4(), *root, scale, width,
                          [](zor::Constraint const& target) { return target.getAttachmentTransform(0); });
}

} // namespace zorOSG
