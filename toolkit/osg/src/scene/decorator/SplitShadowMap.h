#pragma once

#include "ShadowPass.h"

#include <osg/Texture2D>
#include <osg/Uniform>

#include <array>
#include <memory>

namespace zorOSG {

/** The view is split by depth, and each part has a depth map of its own, side by side in one texture. */
class SplitShadowMap : public ShadowTechnique {
public:
  SplitShadowMap(osg::Camera& view, Content content);

  osg::StateSet* begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                       SceneSurvey const& survey) override;
  void releaseGLObjects(osg::State* state) const override;

private:
  static constexpr unsigned int SPLITS = 3; // as the scene's program has it

  osg::ref_ptr<osg::Texture2D> m_map;
  std::array<std::unique_ptr<ShadowPass>, SPLITS> m_passes;
  osg::ref_ptr<osg::StateSet> m_state;
  osg::ref_ptr<osg::Uniform> m_matrices;
  osg::ref_ptr<osg::Uniform> m_offsets;
  osg::ref_ptr<osg::Uniform> m_ends;
};

} // namespace zorOSG
