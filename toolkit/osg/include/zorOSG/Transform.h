#pragma once

#include <string>

#include <osg/MatrixTransform>

#include <zor/AffineMatrix4x4.h>
#include <zor/Quat.h>
#include <zor/Vec3.h>
#include <zorOSG/GeometryNode.h>

namespace zorOSG {

/** A matrix node with setters that take toolkit values. Scale, rotation and translation apply in that order.
 */
class Transform : public osg::MatrixTransform {
public:
  /** Creates an identity transform. */
  Transform();

#ifndef SWIG
  using osg::MatrixTransform::setName;
#endif

  /**
   * Sets the node's name.
   * \param name - the name
   */
  void setName(std::string const& name) override;

#ifndef SWIG
  using osg::MatrixTransform::addChild;
#endif

  /**
   * Adds a geometry node below this transform.
   * \param child - the node; null is refused
   * \return true if it was added
   */
  bool addChild(zorOSG::GeometryNode* child);

  /**
   * Adds a node below this transform.
   * \param child - the node; null is refused
   * \return true if it was added
   */
  bool addChild(osg::Node* child) override;

#ifndef SWIG
  using osg::MatrixTransform::setMatrix;
#endif

  /**
   * Sets the whole matrix.
   * \param m - the new matrix
   */
  void setMatrix(zor::AffineMatrix4x4 const& m);

  /**
   * Sets the scale and keeps rotation and translation.
   * \param scale - factor along each axis; 0 flattens
   */
  void setScale(zor::Vec3 const& scale);

  /**
   * Sets the translation and keeps the rest.
   * \param translation - the new position in the parent's coordinates (m)
   */
  void setTranslate(zor::Vec3 const& translation);

  /**
   * Sets the rotation and keeps scale and translation.
   * \param rotation - the new rotation relative to the parent
   */
  void setRotate(zor::Quat const& rotation);

protected:
  ~Transform() override = default;

private:
  void compose(osg::Vec3d const& scale, osg::Quat const& rotation, osg::Vec3d const& translation);

  // Scale and rotation are kept apart: a matrix with a zero or negative scale does not give them back.
  osg::Vec3d m_scale{1.0, 1.0, 1.0};
  osg::Quat m_rotation;
};

/**
 * Takes one reference on a transform.
 * \param node - the transform
 */
void Transform_reference(zorOSG::Transform* node);

/**
 * Releases one reference of a transform and deletes it with the last one.
 * \param node - the transform
 */
void Transform_unreference(zorOSG::Transform* node);

} // namespace zorOSG
