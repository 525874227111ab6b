#include <zorOSG/RenderState.h>

#include <algorithm>
#include <cmath>

#include <osg/Uniform>

#include <zorOSG/Lookup.h>

#include "Ancestry.h"
#include "Checks.h"
#include "Convert.h"
#include "VisualState.h"
#include "shaders/ScenePrograms.h"

namespace zorOSG {

namespace {

constexpr osg::Material::Face bothFaces = osg::Material::FRONT_AND_BACK;

void requireColor(char const* function, zor::Vec4f const& color) {
  for (unsigned int i = 0; i < 4; ++i)
    requireFinite(function, "color", color[i]);
}

/** Gives the scene's program a value, and tells it by a define that there is one. */
void setForShader(osg::Node& node, std::string const& uniform, float value, std::string const& name,
                  bool override) {
  osg::StateSet& state = ownState(node);
  auto const flags = onValue(override);
  state.addUniform(new osg::Uniform(uniform.c_str(), value), flags);
  state.setDefine(name, flags);
}

float limited(char const* function, char const* name, float value) {
  requireFinite(function, name, value);
  return std::clamp(value, 0.0f, 1.0f);
}

/**
 * The Phong exponent whose highlight is as wide (B. Walter et al., "Microfacet models for refraction through
 * rough surfaces", 2007, with the square of the roughness for their width).
 */
float phongExponent(float roughness) {
  float const width = std::max(roughness * roughness, 0.05f);
  return std::clamp(2.0f / (width * width) - 2.0f, 0.0f, 128.0f);
}

bool sameHue(osg::Vec4 const& a, osg::Vec4 const& b) {
  return a.r() == b.r() && a.g() == b.g() && a.b() == b.b();
}

} // namespace

void setDiffuseColor(osg::Node* node, zor::Vec4f const& color, bool override) {
  requireColor("setDiffuseColor", color);
  requireGiven("setDiffuseColor", "node", node);
  osg::Vec4 const diffuse = toOsg(color);
  editLook(*node, override, MaterialValue::DIFFUSE, color.w(), [&diffuse](auto& material) {
    // The ambient colour goes along until it is set to something else: shade of another hue looks dirty.
    if (sameHue(material.getAmbient(bothFaces), material.getDiffuse(bothFaces)))
      material.setAmbient(bothFaces, diffuse);
    material.setDiffuse(bothFaces, diffuse);
  });
}

void setDiffuseColor(zor::RigidBody* body, zor::Vec4f const& color, osg::Group* root) {
  requireGiven("setDiffuseColor", "body", body);
  for (auto const& geometry : body->getGeometries())
    setDiffuseColor(geometry.get(), color, root);
}

void setDiffuseColor(zorCollide::Geometry* geometry, zor::Vec4f const& color, osg::Group* root) {
  requireGiven("setDiffuseColor", "geometry", geometry);
  requireGiven("setDiffuseColor", "root", root);
  for (GeometryNode* node = firstFollowing(*geometry); node; node = nextFollowing(*node))
    if (isAtOrBelow(node, root))
      setDiffuseColor(node, color);
}

void setAmbientColor(osg::Node* node, zor::Vec4f const& color, bool override) {
  requireColor("setAmbientColor", color);
  requireGiven("setAmbientColor", "node", node);
  editLook(*node, override, MaterialValue::AMBIENT, {},
           [&color](auto& material) { material.setAmbient(bothFaces, toOsg(color)); });
}

void setSpecularColor(osg::Node* node, zor::Vec4f const& color, bool override) {
  requireColor("setSpecularColor", color);
  requireGiven("setSpecularColor", "node", node);
  editLook(*node, override, MaterialValue::SPECULAR, {},
           [&color](auto& material) { material.setSpecular(bothFaces, toOsg(color)); });
}

void setShininess(osg::Node* node, float shininess, bool override) {
  requireFinite("setShininess", "shininess", shininess);
  requireGiven("setShininess", "node", node);
  editLook(*node, override, MaterialValue::SHININESS, {}, [shininess](auto& material) {
    material.setShininess(bothFaces, std::clamp(shininess, 0.0f, 128.0f));
  });
}

void setAlpha(osg::Node* node, float alpha, bool override) {
  float const opacity = limited("setAlpha", "alpha", alpha);
  requireGiven("setAlpha", "node", node);
  editLook(*node, override, MaterialValue::ALPHA, opacity,
           [opacity](auto& material) { material.setAlpha(bothFaces, opacity); });
}

void setGamma(osg::Node* node, float gamma, bool override) {
  requireGiven("setGamma", "node", node);
  if (!(gamma >= 0.1f && gamma <= 10.0f))
    throw std::invalid_argument("setGamma: gamma must be 0.1 to 10, not " + std::to_string(gamma));
  setForShader(*node, "zor_gamma", gamma, define::GAMMA, override);
  // Not one of its own, which would take the default looks away from all that is below.
  osg::StateSet& state = *node->getStateSet();
  GeometryNode const* const visual = asGeometryNode(node);
  bool const hasDefaultLook = visual && visual->getDefaultLook();
  if (!state.getAttribute(osg::StateAttribute::MATERIAL) && !hasDefaultLook && !hasLook(*node))
    state.setAttributeAndModes(&defaultMaterial());
}

void setMetallic(osg::Node* node, float metallic, bool override) {
  float const value = limited("setMetallic", "metallic", metallic);
  requireGiven("setMetallic", "node", node);
  ownMaterial(*node, override, MaterialValue::NONE);
  setForShader(*node, "zor_metallic", value, define::METALLIC, override);
}

void setRoughness(osg::Node* node, float roughness, bool override) {
  float const value = limited("setRoughness", "roughness", roughness);
  requireGiven("setRoughness", "node", node);
  ownMaterial(*node, override, MaterialValue::SHININESS).setShininess(bothFaces, phongExponent(value));
  setForShader(*node, "zor_roughness", value, define::ROUGHNESS, override);
}

void setEnvMapReflectionCoefficient(osg::Node* node, float coefficient) {
  requireGiven("setEnvMapReflectionCoefficient", "node", node);
  float const value = limited("setEnvMapReflectionCoefficient", "coefficient", coefficient);
  setForShader(*node, "zor_reflection", value, define::REFLECTION, false);
}

} // namespace zorOSG
