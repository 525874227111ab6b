#pragma once

#include "ShadowMesh.h"
#include "ShadowTechnique.h"

#include <osg/Geometry>
#include <osg/Matrixd>
#include <osg/observer_ptr>

#include <memory>
#include <unordered_map>
#include <vector>

namespace zorOSG {

/**
 * Shadow volumes: the space that a body keeps light from is drawn into the stencil buffer, and what is seen
 * inside is drawn once more without that light. Edges are exact at any distance. Drawables without triangles
 * of their own, such as particles, cast none.
 */
class ShadowVolumes : public ShadowTechnique {
public:
  ShadowVolumes(osg::Camera& view, Content content);

  /** \return true if what the camera draws to has a stencil buffer */
  static bool arePossible(osg::Camera const& view);

  osg::StateSet* begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                       SceneSurvey const& survey) override;
  void end(osgUtil::CullVisitor& visitor, osg::Light const& light, SceneSurvey const& survey) override;
  void releaseGLObjects(osg::State* state) const override;

private:
  /** A mesh with its neighbourhood, which takes time to find. */
  struct Known {
    osg::observer_ptr<osg::Geometry> mesh;
    unsigned int revision = 0;
    std::shared_ptr<ShadowMesh const> shadow;
  };

  /** The volume of one body, made anew when anything about it changes. */
  struct Volume {
    std::shared_ptr<ShadowMesh const> shadow;
    osg::Matrixd place;
    std::vector<osg::Plane> cuts;
    VolumeSurface surface;
  };

  std::shared_ptr<ShadowMesh const> shadowOf(osg::Geometry& mesh);
  bool updateVolumes(VolumeLight const& light, SceneSurvey const& survey);
  void showVolumes();
  void drawVolumes(osgUtil::CullVisitor& visitor);
  void drawInShadow(osgUtil::CullVisitor& visitor, osg::Light const& light);

  Content m_content;
  std::unordered_map<osg::Geometry const*, Known> m_known;
  std::vector<Volume> m_volumes;
  VolumeLight m_light{};
  osg::Vec3d m_origin; ///< of the drawable's coordinates, near what is drawn
  osg::ref_ptr<osg::Geometry> m_sides;
  osg::ref_ptr<osg::Geometry> m_lids;
  osg::ref_ptr<osg::StateSet> m_inShadow;
};

} // namespace zorOSG
