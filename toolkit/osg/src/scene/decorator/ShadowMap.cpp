#include "ShadowMap.h"

#include "SceneSurvey.h"
#include "ShadowTextures.h"
#include "shaders/ScenePrograms.h"

#include <osgUtil/CullVisitor>

namespace zorOSG {

namespace {

/** A soft edge is four texels wide, a sharp one a single texel: half as many texels do for soft ones. */
constexpr int SOFT_MAP_SIZE = 1024;
constexpr int SHARP_MAP_SIZE = 2048;

/** A soft edge is at least this part of the view's height wide, a quarter of it a texel, or it would look
 * sharp. */
constexpr double SOFTNESS = 0.25 * 0.0065;

/** Surfaces are looked up this many texels above themselves: the reach of the filter. */
constexpr double SOFT_OFFSET = 2.0;
constexpr double SHARP_OFFSET = 1.2;

std::string const& kindOf(ShadowMap::Style style) {
  switch (style) {
  case ShadowMap::Style::SHARP:
    return define::SHARP_MAP;
  case ShadowMap::Style::WARPED:
    return define::WARPED_MAP;
  case ShadowMap::Style::SOFT:
    break;
  }
  return define::SOFT_MAP;
}

} // namespace

ShadowMap::ShadowMap(osg::Camera& view, Content content, Style style)
    : ShadowTechnique(view), m_style(style), m_size(style == Style::SOFT ? SOFT_MAP_SIZE : SHARP_MAP_SIZE),
      m_map(makeDepthTexture(m_size, m_size, style == Style::SHARP)),
      m_pass(std::move(content), m_map, {0, m_size}, ShadowPass::Kind::DEPTH),
      m_state(makeShadowState(*m_map)),
      m_matrix(new osg::Uniform(osg::Uniform::FLOAT_MAT4, "zor_shadowMatrix")),
      m_offset(new osg::Uniform("zor_shadowOffset", osg::Vec2())) {
  m_state->addUniform(m_matrix);
  m_state->addUniform(m_offset);
}

osg::StateSet* ShadowMap::begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                                SceneSurvey const& survey) {
  ShadowTask task = shadowTask(visitor, light, survey);
  task.softness = m_style == Style::SOFT ? SOFTNESS : 0.0;
  task.mapSize = m_size;
  task.isWarped = m_style == Style::WARPED;
  ShadowFit const fit = fitShadow(task);
  if (fit.empty)
    return nullptr;
  m_pass.cull(visitor, fit, survey.scene());
  m_matrix->set(osg::Matrixf(toTexture(task.view, fit)));
  double const offset = m_style == Style::SHARP ? SHARP_OFFSET : SOFT_OFFSET;
  m_offset->set(
      osg::Vec2(static_cast<float>(fit.texel * offset), static_cast<float>(fit.texelGrowth * offset)));
  setShadowDefines(*m_state, light, kindOf(m_style));
  return m_state;
}

void ShadowMap::releaseGLObjects(osg::State* state) const {
  m_pass.releaseGLObjects(state);
  m_map->releaseGLObjects(state);
  m_state->releaseGLObjects(state);
}

} // namespace zorOSG
