#pragma once

#include "Offscreen.h"

#include <zorOSG/SceneDecorator.h>

#include <osg/Geometry>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/ShapeDrawable>

namespace zorTest {

inline void paint(osg::Node& node, osg::Vec4 const& color) {
  osg::ref_ptr<osg::Material> const material = new osg::Material;
  material->setDiffuse(osg::Material::FRONT_AND_BACK, color);
  material->setAmbient(osg::Material::FRONT_AND_BACK, color);
  material->setSpecular(osg::Material::FRONT_AND_BACK, {0.0f, 0.0f, 0.0f, 1.0f});
  node.getOrCreateStateSet()->setAttributeAndModes(material);
}

inline osg::ref_ptr<osg::MatrixTransform> place(osg::Shape* shape, osg::Matrixd const& matrix) {
  osg::ref_ptr<osg::MatrixTransform> node = new osg::MatrixTransform(matrix);
  node->addChild(new osg::ShapeDrawable(shape));
  paint(*node, {0.6f, 0.6f, 0.6f, 1.0f});
  return node;
}

/** A ground of the given half width with its top at z = 0. */
inline osg::ref_ptr<osg::MatrixTransform> ground(float half) {
  return place(new osg::Box({}, 2.0f * half, 2.0f * half, 0.2f), osg::Matrixd::translate(0.0, 0.0, -0.1));
}

inline osg::ref_ptr<osg::MatrixTransform> box(float side, osg::Vec3d const& at) {
  return place(new osg::Box({}, side), osg::Matrixd::translate(at));
}

/** A decorated scene seen from above and the front, with one light that shines along (-1, 0, -1). */
class DecoratorScene {
public:
  explicit DecoratorScene(int width = 200, int height = 150)
      : view(width, height),
        decorator(new zorOSG::SceneDecorator(width, height, zorOSG::SceneDecorator::LIGHT0)) {
    view.viewer().setLightingMode(osg::View::NO_LIGHT);
    view.lookAt({0.0, -12.0, 14.0}, {});
    decorator->getLightSource(zorOSG::SceneDecorator::LIGHT0).setPosition(zor::Vec4(1.0, 0.0, 1.0, 0.0));
  }

  osg::ref_ptr<osg::Image> render(int frames = 1) { return view.render(decorator, frames); }

  /** \return brightness of the picture where the camera shows a point */
  double at(osg::Image const& image, osg::Vec3d const& point) {
    return brightness(image, view.project(point));
  }

  Offscreen view;
  osg::ref_ptr<zorOSG::SceneDecorator> decorator;
};

} // namespace zorTest
