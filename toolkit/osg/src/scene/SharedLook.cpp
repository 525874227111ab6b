#include "SharedLook.h"

#include <algorithm>
#include <mutex>
#include <string_view>
#include <unordered_map>

#include "VisualState.h"

namespace zorOSG {

namespace {

constexpr osg::Material::Face bothFaces = osg::Material::FRONT_AND_BACK;

// A state set looks through all of its nodes when one leaves.
constexpr unsigned int MOST_NODES = 1024;

struct LookHash {
  std::size_t operator()(LookValues const& values) const { return values.hash(); }
};

/** The looks that are worn now. */
class SharedLooks {
public:
  static SharedLooks& instance() {
    static SharedLooks& looks = *new SharedLooks; // never destroyed: nodes in static storage may go later
    return looks;
  }

  osg::ref_ptr<SharedLook> get(LookValues const& values) {
    std::lock_guard const lock(m_mutex);
    if (m_looks.size() >= m_sizeToCleanAt)
      dropUnused();
    osg::ref_ptr<SharedLook>& look = m_looks[values];
    if (!look)
      look = new SharedLook(values, *values.makeMaterial());
    else if (look->getNumParents() >= MOST_NODES)
      look = new SharedLook(values, look->material());
    return look;
  }

private:
  void dropUnused() {
    std::erase_if(m_looks, [](auto const& entry) { return entry.second->referenceCount() == 1; });
    m_sizeToCleanAt = std::max<std::size_t>(64, 2 * m_looks.size());
  }

  std::mutex m_mutex;
  std::unordered_map<LookValues, osg::ref_ptr<SharedLook>, LookHash> m_looks;
  std::size_t m_sizeToCleanAt = 64;
};

} // namespace

LookValues::LookValues(osg::Material const& material)
    : m_ambient(material.getAmbient(bothFaces)), m_diffuse(material.getDiffuse(bothFaces)),
      m_specular(material.getSpecular(bothFaces)), m_emission(material.getEmission(bothFaces)),
      m_shininess(material.getShininess(bothFaces)) {}

bool LookValues::canHold(osg::Material const& material) {
  return material.getColorMode() == osg::Material::OFF && material.getAmbientFrontAndBack() &&
         material.getDiffuseFrontAndBack() && material.getSpecularFrontAndBack() &&
         material.getEmissionFrontAndBack() && material.getShininessFrontAndBack();
}

void LookValues::setAlpha(osg::Material::Face, float alpha) {
  for (osg::Vec4* const color : {&m_ambient, &m_diffuse, &m_specular, &m_emission})
    color->a() = alpha;
}

osg::ref_ptr<osg::Material> LookValues::makeMaterial() const {
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setAmbient(bothFaces, m_ambient);
  material->setDiffuse(bothFaces, m_diffuse);
  material->setSpecular(bothFaces, m_specular);
  material->setEmission(bothFaces, m_emission);
  material->setShininess(bothFaces, m_shininess);
  setOverrides(*material, overrides);
  return material;
}

std::size_t LookValues::hash() const {
  static_assert(sizeof(*this) == 2 * sizeof(std::uint32_t) + 17 * sizeof(float)); // nothing in between
  return std::hash<std::string_view>()({reinterpret_cast<char const*>(this), sizeof(*this)});
}

SharedLook::SharedLook(LookValues const& values, osg::Material& material)
    : m_values(values), m_material(&material) {
  setAttributeAndModes(&material, onValue(values.overrides != 0));
  if (values.blend == Blend::OFF)
    return;
  setMode(GL_BLEND, onValue(values.blend == Blend::ON_AND_OVERRIDE));
  setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
}

void SharedLook::give(GeometryNode& visual, LookValues const& values) {
  auto const* const worn = dynamic_cast<SharedLook*>(visual.getStateSet());
  if (!worn || !(worn->values() == values))
    visual.setStateSet(SharedLooks::instance().get(values));
}

} // namespace zorOSG
