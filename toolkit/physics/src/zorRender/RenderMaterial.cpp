#include <zorRender/RenderMaterial.h>

#include <stdexcept>
#include <string>

namespace zorRender {

void RenderMaterial::setDiffuseColor(Color const& color) {
  m_diffuse = color;
  m_set |= DIFFUSE;
}

void RenderMaterial::setAmbientColor(Color const& color) {
  m_ambient = color;
  m_set |= AMBIENT;
}

void RenderMaterial::setSpecularColor(Color const& color) {
  m_specular = color;
  m_set |= SPECULAR;
}

void RenderMaterial::setEmissiveColor(Color const& color) {
  m_emissive = color;
  m_set |= EMISSIVE;
}

void RenderMaterial::setShininess(float shininess) {
  if (!(shininess >= 0.0f && shininess <= 128.0f))
    throw std::invalid_argument("RenderMaterial: shininess is " + std::to_string(shininess) +
                                ", but must be between 0 and 128");
  m_shininess = shininess;
}

void RenderMaterial::setTransparency(float transparency) {
  if (!(transparency >= 0.0f && transparency <= 1.0f))
    throw std::invalid_argument("RenderMaterial: transparency is " + std::to_string(transparency) +
                                ", but must be between 0 and 1");
  m_transparency = transparency;
}

} // namespace zorRender
