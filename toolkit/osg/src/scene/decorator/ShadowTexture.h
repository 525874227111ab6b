#pragma once

#include "ShadowPass.h"

#include <osg/Texture2D>
#include <osg/Uniform>

namespace zorOSG {

/** The bodies' silhouettes, projected on what lies behind all of them: no body darkens another one. */
class ShadowTexture : public ShadowTechnique {
public:
  ShadowTexture(osg::Camera& view, Content content);

  osg::StateSet* begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                       SceneSurvey const& survey) override;
  void releaseGLObjects(osg::State* state) const override;

private:
  osg::ref_ptr<osg::Texture2D> m_silhouette;
  ShadowPass m_pass;
  osg::ref_ptr<osg::StateSet> m_state;
  osg::ref_ptr<osg::Uniform> m_matrix;
};

} // namespace zorOSG
