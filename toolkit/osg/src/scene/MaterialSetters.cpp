#include <zorOSG/RenderState.h>

#include <algorithm>

#include <zorOSG/Lookup.h>

#include "Checks.h"
#include "Convert.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

constexpr osg::Material::Face bothFaces = osg::Material::FRONT_AND_BACK;

osg::Material& materialFor(char const* function, osg::Node* node, bool override) {
  requireGiven(function, "node", node);
  return ownMaterial(*node, override);
}

void requireColor(char const* function, zor::Vec4f const& color) {
  for (unsigned int i = 0; i < 4; ++i)
    requireFinite(function, "color", color[i]);
}

bool sameHue(osg::Vec4 const& a, osg::Vec4 const& b) {
  return a.r() == b.r() && a.g() == b.g() && a.b() == b.b();
}

} // namespace

void setDiffuseColor(osg::Node* node, zor::Vec4f const& color, bool override) {
  requireColor("setDiffuseColor", color);
  osg::Material& material = materialFor("setDiffuseColor", node, override);
  // The ambient colour goes along until it is set to something else: shade of another hue looks dirty.
  if (sameHue(material.getAmbient(bothFaces), material.getDiffuse(bothFaces)))
    material.setAmbient(bothFaces, toOsg(color));
  material.setDiffuse(bothFaces, toOsg(color));
  setTransparency(*node->getStateSet(), color.w(), override);
}

void setDiffuseColor(zor::RigidBody* body, zor::Vec4f const& color, osg::Group* root) {
  requireGiven("setDiffuseColor", "body", body);
  for (auto const& geometry : body->getGeometries())
    setDiffuseColor(geometry.get(), color, root);
}

void setDiffuseColor(zorCollide::Geometry* geometry, zor::Vec4f const& color, osg::Group* root) {
  requireGiven("setDiffuseColor", "geometry", geometry);
  requireGiven("setDiffuseColor", "root", root);
  for (GeometryNode* node : findGeometryNodes(geometry, root))
    setDiffuseColor(node, color);
}

void setAmbientColor(osg::Node* node, zor::Vec4f const& color, bool override) {
  requireColor("setAmbientColor", color);
  materialFor("setAmbientColor", node, override).setAmbient(bothFaces, toOsg(color));
}

void setSpecularColor(osg::Node* node, zor::Vec4f const& color, bool override) {
  requireColor("setSpecularColor", color);
  materialFor("setSpecularColor", node, override).setSpecular(bothFaces, toOsg(color));
}

void setShininess(osg::Node* node, float shininess, bool override) {
  requireFinite("setShininess", "shininess", shininess);
  materialFor("setShininess", node, override).setShininess(bothFaces, std::clamp(shininess, 0.0f, 128.0f));
}

void setAlpha(osg::Node* node, float alpha, bool override) {
  requireFinite("setAlpha", "alpha", alpha);
  float const limited = std::clamp(alpha, 0.0f, 1.0f);
  materialFor("setAlpha", node, override).setAlpha(bothFaces, limited);
  setTransparency(*node->getStateSet(), limited, override);
}

} // namespace zorOSG
