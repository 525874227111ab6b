#pragma once

#include <cstdint>

#include <osg/Material>
#include <osg/Vec4>
#include <osg/ref_ptr>

#include <zorOSG/GeometryNode.h>
#include <zorOSG/SharedState.h>

namespace zorOSG {

/** Whether what is behind shines through, and whether that wins over nodes further down. */
enum class Blend : std::uint32_t { OFF, ON, ON_AND_OVERRIDE };

/** The values of a look that visuals may share; changed by the same calls as those of a material. */
class LookValues {
public:
  LookValues() = default;
  explicit LookValues(osg::Material const& material);

  /** False for materials with more to them than these values. */
  static bool canHold(osg::Material const& material);

  osg::Vec4 const& getAmbient(osg::Material::Face) const { return m_ambient; }
  osg::Vec4 const& getDiffuse(osg::Material::Face) const { return m_diffuse; }
  void setAmbient(osg::Material::Face, osg::Vec4 const& color) { m_ambient = color; }
  void setDiffuse(osg::Material::Face, osg::Vec4 const& color) { m_diffuse = color; }
  void setSpecular(osg::Material::Face, osg::Vec4 const& color) { m_specular = color; }
  void setShininess(osg::Material::Face, float shininess) { m_shininess = shininess; }
  void setAlpha(osg::Material::Face, float alpha);

  osg::ref_ptr<osg::Material> makeMaterial() const;

  std::uint32_t overrides = 0; // bits of MaterialValue
  Blend blend = Blend::OFF;

  bool operator==(LookValues const&) const = default;
  std::size_t hash() const;

private:
  osg::Vec4 m_ambient, m_diffuse, m_specular, m_emission;
  float m_shininess = 0.0f;
};

/** State with nothing but a look. */
class SharedLook final : public SharedState {
public:
  SharedLook(LookValues const& values, osg::Material& material);

  LookValues const& values() const { return m_values; }
  osg::Material& material() const { return *m_material; }

  /** Gives a visual the look, with the state set that others of the same look have. */
  static void give(GeometryNode& visual, LookValues const& values);

protected:
  ~SharedLook() override = default;

private:
  LookValues m_values;
  osg::ref_ptr<osg::Material> m_material;
};

} // namespace zorOSG
