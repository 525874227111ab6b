#pragma once

#include <zor/Object.h>
#include <zorRender/Color.h>

namespace zorRender {

/**
 * How a surface answers to light. A component that was not set is left to the renderer; the has... functions
 * say which were set.
 */
class RenderMaterial : public zor::Object {
public:
  RenderMaterial() = default;

  /** \param color - the diffuse colour, whose alpha is the opacity */
  void setDiffuseColor(zorRender::Color const& color);
  /** \return the diffuse colour; light grey when it was not set */
  zorRender::Color getDiffuseColor() const { return m_diffuse; }
  /** \return true if a diffuse colour was set */
  bool hasDiffuseColor() const { return (m_set & DIFFUSE) != 0; }

  /** \param color - the ambient colour */
  void setAmbientColor(zorRender::Color const& color);
  /** \return the ambient colour; dark grey when it was not set */
  zorRender::Color getAmbientColor() const { return m_ambient; }
  /** \return true if an ambient colour was set */
  bool hasAmbientColor() const { return (m_set & AMBIENT) != 0; }

  /** \param color - the specular colour */
  void setSpecularColor(zorRender::Color const& color);
  /** \return the specular colour; black when it was not set */
  zorRender::Color getSpecularColor() const { return m_specular; }
  /** \return true if a specular colour was set */
  bool hasSpecularColor() const { return (m_set & SPECULAR) != 0; }

  /** \param color - the light that the surface sends out by itself */
  void setEmissiveColor(zorRender::Color const& color);
  /** \return the emissive colour; black when it was not set */
  zorRender::Color getEmissiveColor() const { return m_emissive; }
  /** \return true if an emissive colour was set */
  bool hasEmissiveColor() const { return (m_set & EMISSIVE) != 0; }

  /** \param shininess - specular exponent, 0 to 128; outside throws std::invalid_argument */
  void setShininess(float shininess);
  /** \return the specular exponent */
  float getShininess() const { return m_shininess; }

  /** \param transparency - 0 opaque to 1 invisible; outside throws std::invalid_argument */
  void setTransparency(float transparency);
  /** \return 0 opaque to 1 invisible */
  float getTransparency() const { return m_transparency; }

  /** \param filename - image file of the texture, found through the resource path when a visual is made;
   * empty for none. The diffuse colour tints it */
  void setDiffuseTexture(zor::String const& filename) { m_diffuseTexture = filename; }
  /** \return image file of the texture, or an empty text */
  zor::String const& getDiffuseTexture() const { return m_diffuseTexture; }

protected:
  ~RenderMaterial() override = default;

private:
  enum Component : unsigned int { DIFFUSE = 1, AMBIENT = 2, SPECULAR = 4, EMISSIVE = 8 };

  Color m_diffuse{0.8f, 0.8f, 0.8f, 1.0f};
  Color m_ambient{0.2f, 0.2f, 0.2f, 1.0f};
  Color m_specular{0.0f, 0.0f, 0.0f, 1.0f};
  Color m_emissive{0.0f, 0.0f, 0.0f, 1.0f};
  float m_shininess = 0.0f;
  float m_transparency = 0.0f;
  unsigned int m_set = 0;
  zor::String m_diffuseTexture;
};

} // namespace zorRender
