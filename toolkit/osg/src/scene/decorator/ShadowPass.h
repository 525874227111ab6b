#pragma once

#include "ShadowFit.h"
#include "ShadowTechnique.h"

#include <osg/Camera>
#include <osg/Program>
#include <osg/Texture2D>

namespace zorOSG {

/** The drawing of what casts shadows, seen from the light, into a texture or a part of one. */
class ShadowPass {
public:
  /** A square of texels. */
  struct Tile {
    int x;
    int size;
  };

  /** What of the drawing the texture gets. */
  enum class Kind {
    DEPTH,     ///< the depth of what is nearest to the light
    SILHOUETTE ///< red: 1 where there is anything; green: the depth of what is farthest from the light
  };

  ShadowPass(ShadowTechnique::Content content, osg::Texture2D* target, Tile tile, Kind kind);

  /** Adds the pass to the view that is being culled. \param scene - box of everything */
  void cull(osgUtil::CullVisitor& visitor, ShadowFit const& fit, osg::BoundingBoxd const& scene);

  void releaseGLObjects(osg::State* state) const { m_camera->releaseGLObjects(state); }

private:
  osg::ref_ptr<osg::Camera> m_camera;
};

} // namespace zorOSG
