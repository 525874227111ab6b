#pragma once

#include <memory>

#include <zor/AffineMatrix4x4.h>
#include <zor/Object.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorRender/RenderData.h>

#ifndef SWIG
namespace zorBullet {
class ShapeImpl;
class ShapeHolder;
} // namespace zorBullet
#endif

namespace zorCollide {

/**
 * The form of a collision geometry, in its own frame. A shape may be shared by several geometries and
 * compounds; each sets it with its own local transform, which must not scale.
 *
 * A shape that changes tells every geometry that holds it.
 */
class Shape : public zor::Object {
public:
  /** The concrete class. */
  enum Type : int {
    BOX,          ///< Box.
    SPHERE,       ///< Sphere.
    CAPSULE,      ///< Capsule.
    CYLINDER,     ///< Cylinder.
    CONE,         ///< Cone.
    PLANE,        ///< Plane.
    CONVEX,       ///< Convex.
    TRIMESH,      ///< Trimesh.
    HEIGHT_FIELD, ///< HeightField.
    COMPOUND      ///< Compound.
  };

  /** \return the concrete class */
  Type getType() const { return m_type; }

  /** \return the concrete class as a word, for messages */
  char const* getTypeName() const;

  /** \return volume (m3); that of the convex hull for a triangle mesh that is not closed, 0 for a plane and a
   * height field */
  zor::Real getVolume() const;

  /**
   * Gives the smallest box along the axes that holds the shape.
   * \param transform - frame of the shape, seen from where the box is wanted
   * \param lower - gets the lower corner (m)
   * \param upper - gets the upper corner (m); planes reach to +-1e18
   */
  void getBounds(zor::AffineMatrix4x4 const& transform, zor::Vec3& lower, zor::Vec3& upper) const;

  /** \param renderData - triangles drawn in place of the shape; null to draw the shape itself */
  void setRenderData(zorRender::RenderData* renderData);
  /** \return triangles drawn in place of the shape, or null */
  zorRender::RenderData* getRenderData() const { return m_renderData.get(); }

#ifndef SWIG
  /** \return a number that is another one after each change of the shape's form or render data */
  unsigned int getRevision() const;

  zorBullet::ShapeImpl& getImpl() const { return *m_impl; }
#endif

protected:
  Shape(Type type, std::unique_ptr<zorBullet::ShapeImpl> impl);
  ~Shape() override;

  // Puts a new engine form in place and tells the holders.
  void replaceImpl(std::unique_ptr<zorBullet::ShapeImpl> impl);

private:
  Type m_type;
  std::unique_ptr<zorBullet::ShapeImpl> m_impl;
  zor::ref_ptr<zorRender::RenderData> m_renderData;
};

/** Shapes in a row. */
typedef zor::Vector<zor::ref_ptr<zorCollide::Shape>> ShapeRefVector;

} // namespace zorCollide
