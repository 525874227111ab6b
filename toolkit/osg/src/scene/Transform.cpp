#include <zorOSG/Transform.h>

#include <osg/StateSet>

#include "Ancestry.h"
#include "Convert.h"

namespace zorOSG {

Transform::Transform() = default;

void Transform::setName(std::string const& name) {
  osg::MatrixTransform::setName(name);
}

bool Transform::addChild(zorOSG::GeometryNode* child) {
  return addChild(static_cast<osg::Node*>(child));
}

bool Transform::addChild(osg::Node* child) {
  requireNoCircle("addChild", this, child);
  return child && osg::MatrixTransform::addChild(child);
}

void Transform::setMatrix(zor::AffineMatrix4x4 const& m) {
  osg::Matrixd const matrix = toOsg(m);
  osg::Vec3d translation;
  osg::Quat scaleOrientation;
  matrix.decompose(translation, m_rotation, m_scale, scaleOrientation);
  osg::MatrixTransform::setMatrix(matrix);
}

void Transform::setScale(zor::Vec3 const& scale) {
  compose(toOsg(scale), m_rotation, getMatrix().getTrans());
  // Scaled normals would change the brightness.
  getOrCreateStateSet()->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
}

void Transform::setTranslate(zor::Vec3 const& translation) {
  osg::Matrixd matrix = getMatrix();
  matrix.setTrans(toOsg(translation));
  osg::MatrixTransform::setMatrix(matrix);
}

void Transform::setRotate(zor::Quat const& rotation) {
  compose(m_scale, toOsg(rotation), getMatrix().getTrans());
}

void Transform::compose(osg::Vec3d const& scale, osg::Quat const& rotation, osg::Vec3d const& translation) {
  m_scale = scale;
  m_rotation = rotation;
  osg::MatrixTransform::setMatrix(osg::Matrixd::scale(scale) * osg::Matrixd::rotate(rotation) *
                                  osg::Matrixd::translate(translation));
}

} // namespace zorOSG
