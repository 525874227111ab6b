#include "ShadowTexture.h"

#include "SceneSurvey.h"
#include "ShadowTextures.h"
#include "shaders/ScenePrograms.h"

#include <osgUtil/CullVisitor>

namespace zorOSG {

namespace {

constexpr int SIZE = 512;
constexpr double SOFTNESS = 0.25 * 0.0065;

} // namespace

ShadowTexture::ShadowTexture(osg::Camera& view, Content content)
    : ShadowTechnique(view), m_silhouette(makeSilhouetteTexture(SIZE)),
      m_pass(std::move(content), m_silhouette, {0, SIZE}, ShadowPass::Kind::SILHOUETTE),
      m_state(makeShadowState(*m_silhouette)),
      m_matrix(new osg::Uniform(osg::Uniform::FLOAT_MAT4, "zor_shadowMatrix")) {
  m_state->addUniform(m_matrix);
  m_state->addUniform(new osg::Uniform("zor_shadowOffset", osg::Vec2()));
}

osg::StateSet* ShadowTexture::begin(osgUtil::CullVisitor& visitor, osg::Light const& light,
                                    SceneSurvey const& survey) {
  ShadowTask task = shadowTask(visitor, light, survey);
  task.softness = SOFTNESS;
  task.mapSize = SIZE;
  ShadowFit const fit = fitShadow(task);
  if (fit.empty)
    return nullptr;
  m_pass.cull(visitor, fit, survey.scene());
  m_matrix->set(osg::Matrixf(toTexture(task.view, fit)));
  setShadowDefines(*m_state, light, define::SILHOUETTES);
  return m_state;
}

void ShadowTexture::releaseGLObjects(osg::State* state) const {
  m_pass.releaseGLObjects(state);
  m_silhouette->releaseGLObjects(state);
  m_state->releaseGLObjects(state);
}

} // namespace zorOSG
