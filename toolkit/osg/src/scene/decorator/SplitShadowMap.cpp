#include "SplitShadowMap.h"

#include "SceneSurvey.h"
#include "ShadowTextures.h"
#include "shaders/ScenePrograms.h"

#include <osgUtil/CullVisitor>

#include <algorithm>
#include <cmath>

namespace zorOSG {

namespace {

constexpr int TILE = 1024;
constexpr double OFFSET = 2.0;
constexpr double SOFTNESS = 0.25 * 0.0040;

/** Between depths that grow by a factor, which suits perspective, and depths at equal distances. */
constexpr double LOGARITHMIC = 0.75;

double splitAt(DepthRange const& range, double part) {
  double const even = range.nearest + (range.farthest - range.nearest) * part;
  double const growing = range.nearest * std::pow(range.farthest / range.nearest, part);
  return LOGARITHMIC * growing + (1.0 - LOGARITHMIC) * even;
}

} // namespace

SplitShadowMap::SplitShadowMap(osg::Camera& view, Content content)
    : ShadowTechnique(view), m_map(makeDepthTexture(TILE * static_cast<int>(SPLITS), TILE, false)),
      m_state(makeShadowState(*m_map)),
      m_matrices(new osg::Uniform(osg::Uniform::FLOAT_MAT4, "zor_splitMatrix", SPLITS)),
      m_offsets(new osg::Uniform(osg::Uniform::FLOAT, "zor_splitOffset", SPLITS)),
      m_ends(new osg::Uniform(osg::Uniform::FLOAT, "zor_splitEnd", SPLITS)) {
  for (unsigned int i = 0; i < SPLITS; ++i)
    m_passes[i] = std::make_unique<ShadowPass>(
        content, m_map, ShadowPass::Tile{static_cast<int>(i) * TILE, TILE}, ShadowPass::Kind::DEPTH);
  for (auto const& uniform : {m_matrices, m_offsets, m_ends})
    m_state->addUniform(uniform);
}

osg::StateSet* SplitShadowMap::begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                                     SceneSurvey const& survey) {
  ShadowTask task = shadowTask(visitor, light, survey);
  task.softness = SOFTNESS;
  task.mapSize = TILE;
  DepthRange range = visibleDepths(task);
  range.nearest = std::max(range.nearest, 0.01 * range.farthest);
  if (!(range.farthest > range.nearest))
    return nullptr;
  bool any = false;
  for (unsigned int i = 0; i < SPLITS; ++i) {
    task.depths = {i == 0 ? 0.0 : splitAt(range, i / double(SPLITS)),
                   splitAt(range, (i + 1) / double(SPLITS))};
    ShadowFit const fit = fitShadow(task);
    m_ends->setElement(i, static_cast<float>(task.depths.farthest));
    m_offsets->setElement(i, fit.empty ? -1.0f : static_cast<float>(fit.texel * OFFSET));
    if (fit.empty)
      continue;
    any = true;
    m_passes[i]->cull(visitor, fit, survey.scene());
    m_matrices->setElement(i, osg::Matrixf(toTexture(task.view, fit)));
  }
  setShadowDefines(*m_state, light, define::SPLIT_MAP);
  return any ? m_state.get() : nullptr;
}

void SplitShadowMap::releaseGLObjects(osg::State* state) const {
  for (auto const& pass : m_passes)
    pass->releaseGLObjects(state);
  m_map->releaseGLObjects(state);
  m_state->releaseGLObjects(state);
}

} // namespace zorOSG
