#pragma once

#include <osg/Drawable>
#include <osg/Geometry>
#include <osg/TextureCubeMap>
#include <osg/ref_ptr>

namespace zorOSG {

/**
 * The inside of a body around the camera on which a cube map is seen, behind everything else. It has no bound
 * and no triangles that picking or mesh readers could find.
 */
class SkyDrawable : public osg::Drawable {
public:
  /** \param surface - around the origin \param offset - of the body above the camera (m) */
  SkyDrawable(osg::Geometry* surface, osg::TextureCubeMap* cube, double offset);

  osg::Object* cloneType() const override;
  osg::Object* clone(osg::CopyOp const& copyop) const override;
  char const* libraryName() const override { return "osg"; }
  char const* className() const override { return "Drawable"; }

  osg::BoundingBox computeBoundingBox() const override { return {}; }
  osg::BoundingSphere computeBound() const override { return {}; }
  void drawImplementation(osg::RenderInfo& renderInfo) const override;
  void releaseGLObjects(osg::State* state) const override;
  void resizeGLObjectBuffers(unsigned int maxSize) override;

protected:
  ~SkyDrawable() override = default;

private:
  SkyDrawable(SkyDrawable const& other, osg::CopyOp const& copyop);

  osg::ref_ptr<osg::Geometry> m_surface;
  osg::ref_ptr<osg::TextureCubeMap> m_cube;
  double m_offset;
};

/** The surface of a cube. \param size - length of its edges (m) */
osg::ref_ptr<osg::Geometry> makeCubeSurface(float size);

/** \param radius - of the sphere (m) */
osg::ref_ptr<osg::Geometry> makeSphereSurface(float radius);

} // namespace zorOSG
