#include "TextureRoles.h"

#include <array>
#include <atomic>
#include <string>

#include <osg/TexMat>
#include <osg/TextureCubeMap>
#include <osg/Uniform>

#include "CubeFilter.h"
#include "VisualState.h"
#include "shaders/ScenePrograms.h"

namespace zorOSG {

namespace {

/** What the scene's program has to know of a role. That of the colour is found by the decorator's survey. */
struct Role {
  std::string define;
  osg::ref_ptr<osg::Uniform> sampler;
};

Role makeRole(TextureMode mode, std::string const& name, char const* sampler) {
  return {name, new osg::Uniform(sampler, static_cast<int>(mode))};
}

Role const& roleOf(TextureMode mode) {
  static std::array<Role, METALLIC_TEXTURE + 1> const roles = {
      Role{},
      makeRole(SHADOW_TEXTURE, define::STORED_SHADOW, "zor_storedShadow"),
      makeRole(SHADOW_JITTER_TEXTURE, define::JITTER, "zor_jitter"),
      makeRole(NORMALMAP_TEXTURE, define::NORMAL_MAP, "zor_normalMap"),
      makeRole(HEIGHTMAP_TEXTURE, define::HEIGHT_MAP, "zor_heightMap"),
      makeRole(ROUGHNESS_TEXTURE, define::ROUGHNESS_MAP, "zor_roughnessMap"),
      makeRole(CUBEMAP_TEXTURE, define::SURROUNDINGS, "zor_surroundings"),
      makeRole(METALLIC_TEXTURE, define::METALLIC_MAP, "zor_metallicMap")};
  return roles[static_cast<size_t>(mode)];
}

std::atomic<bool> cubeMapsAreUsed = false;

std::string const& kindOf(osg::Texture const& surroundings) {
  auto const* const cube = dynamic_cast<osg::TextureCubeMap const*>(&surroundings);
  if (!cube)
    return define::MIRROR_BALL;
  return dynamic_cast<FilteredSide const*>(cube->getImage(0)) ? define::FILTERED_CUBE : define::CUBE;
}

/** Depth of a height map in parts of the texture's side. Scripts may set another uniform in its place. */
constexpr float HEIGHT_SCALE = 0.05f;

void addHeightScale(osg::StateSet& state) {
  if (!state.getUniform("zor_heightScale"))
    state.addUniform(new osg::Uniform("zor_heightScale", HEIGHT_SCALE));
}

} // namespace

void bindTexture(osg::Node& node, osg::Texture& texture, TextureMode mode,
                 osg::StateAttribute::OverrideValue value) {
  auto const unit = static_cast<unsigned int>(mode);
  osg::StateSet& state = ownState(node);
  if (mode == DIFFUSE_TEXTURE) {
    state.setTextureAttributeAndModes(unit, &texture, value);
    return;
  }
  // For shaders; switched on for fixed drawing it would be multiplied onto the colour.
  state.setTextureAttribute(unit, &texture, value);
  bool const isCube = dynamic_cast<osg::TextureCubeMap*>(&texture) != nullptr;
  Role const& role = roleOf(mode);
  state.setDefine(role.define, mode == CUBEMAP_TEXTURE ? kindOf(texture) : define::CUBE, value);
  state.addUniform(role.sampler, value);
  if (mode == HEIGHTMAP_TEXTURE)
    addHeightScale(state);
  if (isCube)
    cubeMapsAreUsed = true;
}

void scaleTexture(osg::Node& node, TextureMode mode, float scaleU, float scaleV,
                  osg::StateAttribute::OverrideValue value) {
  static osg::ref_ptr<osg::TexMat> const unscaled = new osg::TexMat;
  bool const isScaled = scaleU != 1.0f || scaleV != 1.0f;
  osg::ref_ptr<osg::TexMat> const scale =
      isScaled ? new osg::TexMat(osg::Matrix::scale(scaleU, scaleV, 1.0)) : unscaled.get();
  ownState(node).setTextureAttribute(static_cast<unsigned int>(mode), scale, value);
}

bool areCubeMapsUsed() {
  return cubeMapsAreUsed;
}

} // namespace zorOSG
