#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/Referenced.h>

#include <zorModel/TriangleData.h>

namespace zorModel {

/** Shows the pressure on a surface. It is given all triangles anew whenever they change: clear(),
 * addTriangle() for each, done(). */
class PressureFieldRenderer : public zor::Referenced {
public:
  /**
   * \param tData - a triangle in the world
   * \param worldToShape - from the world to the frame of the shape that carries the surface
   */
  virtual void addTriangle(zorModel::TriangleData const& tData, zor::AffineMatrix4x4 const& worldToShape) = 0;

  /** Begins a new set of triangles: those of the last one are gone. */
  virtual void clear() = 0;

  /** Ends a set of triangles, which is shown from now on. */
  virtual void done() = 0;

  /** \param shapeToWorld - where the shape is now */
  virtual void updateTransform(zor::AffineMatrix4x4 const& shapeToWorld) = 0;

protected:
  ~PressureFieldRenderer() override = default;
};

} // namespace zorModel
