#pragma once

#include "ShadowPass.h"

#include <osg/Texture2D>
#include <osg/Uniform>
#include <osg/ref_ptr>

namespace zorOSG {

/** One depth map that covers all of the view. */
class ShadowMap : public ShadowTechnique {
public:
  enum class Style {
    SHARP,
    SOFT,
    WARPED ///< soft, with more texels where the view is near (light-space perspective)
  };

  ShadowMap(osg::Camera& view, Content content, Style style);

  osg::StateSet* begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                       SceneSurvey const& survey) override;
  void releaseGLObjects(osg::State* state) const override;

private:
  Style m_style;
  int m_size;
  osg::ref_ptr<osg::Texture2D> m_map;
  ShadowPass m_pass;
  osg::ref_ptr<osg::StateSet> m_state;
  osg::ref_ptr<osg::Uniform> m_matrix;
  osg::ref_ptr<osg::Uniform> m_offset;
};

} // namespace zorOSG
