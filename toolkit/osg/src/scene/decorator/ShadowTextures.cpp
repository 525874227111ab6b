#include "ShadowTextures.h"

#include "shaders/ScenePrograms.h"

namespace zorOSG {

namespace {

constexpr GLint TWO_FLOATS = 0x8230; // GL_RG32F
constexpr GLenum TWO_PARTS = 0x8227; // GL_RG

osg::ref_ptr<osg::Texture2D> makeTexture(int width, int height, bool filtered) {
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D;
  texture->setTextureSize(width, height);
  auto const filter = filtered ? osg::Texture::LINEAR : osg::Texture::NEAREST;
  texture->setFilter(osg::Texture::MIN_FILTER, filter);
  texture->setFilter(osg::Texture::MAG_FILTER, filter);
  // The fit leaves a margin, so the edge is light wherever the view can see beyond it.
  texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
  texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
  texture->setResizeNonPowerOfTwoHint(false);
  return texture;
}

} // namespace

osg::ref_ptr<osg::Texture2D> makeDepthTexture(int width, int height, bool compared) {
  osg::ref_ptr<osg::Texture2D> texture = makeTexture(width, height, compared);
  texture->setInternalFormat(GL_DEPTH_COMPONENT24);
  texture->setSourceFormat(GL_DEPTH_COMPONENT);
  texture->setSourceType(GL_UNSIGNED_INT);
  texture->setShadowComparison(compared);
  return texture;
}

osg::ref_ptr<osg::Texture2D> makeSilhouetteTexture(int size) {
  osg::ref_ptr<osg::Texture2D> texture = makeTexture(size, size, true);
  texture->setInternalFormat(TWO_FLOATS);
  texture->setSourceFormat(TWO_PARTS);
  texture->setSourceType(GL_FLOAT);
  return texture;
}

osg::ref_ptr<osg::StateSet> makeShadowState(osg::Texture2D& texture) {
  osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
  state->setDataVariance(osg::Object::DYNAMIC);
  state->setTextureAttribute(SHADOW_UNIT, &texture);
  state->addUniform(new osg::Uniform("zor_shadowMap", static_cast<int>(SHADOW_UNIT)));
  state->addUniform(
      new osg::Uniform("zor_shadowMapSize", osg::Vec2(static_cast<float>(texture.getTextureWidth()),
                                                      static_cast<float>(texture.getTextureHeight()))));
  return state;
}

osg::Matrixd toTexture(osg::Matrixd const& sceneToEye, ShadowFit const& fit) {
  osg::Matrixd const fromClip = osg::Matrixd::translate(1.0, 1.0, 1.0) * osg::Matrixd::scale(0.5, 0.5, 0.5);
  return osg::Matrixd::inverse(sceneToEye) * fit.view * fit.projection * fromClip;
}

} // namespace zorOSG
