#include <zorOSG/LightSource.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

osg::Light& lightOf(osg::LightSource& source) {
  if (osg::Light* const light = source.getLight())
    return *light;
  throw std::runtime_error("Light source: its light has been taken away");
}

zor::Vec4f fromOsg(osg::Vec4 const& v) {
  return {v.x(), v.y(), v.z(), v.w()};
}

osg::Vec4 color(zor::Vec4f const& v, char const* what) {
  if (!v.isFinite())
    throw std::invalid_argument(std::string("Light source: ") + what + " colour is not finite");
  return {v.x(), v.y(), v.z(), v.w()};
}

float notNegative(float value, char const* what) {
  if (!(value >= 0.0f && std::isfinite(value)))
    throw std::invalid_argument(std::string("Light source: ") + what + " " + std::to_string(value) +
                                " is negative or not finite");
  return value;
}

} // namespace

LightSource::LightSource(osg::LightSource* lightSource) : m_source(lightSource) {
  if (!lightSource || !lightSource->getLight())
    throw std::invalid_argument("Light source: null, or without a light");
}

int LightSource::getLightNum() const {
  return lightOf(*m_source).getLightNum();
}

void LightSource::setAmbient(zor::Vec4f const& ambient) {
  lightOf(*m_source).setAmbient(color(ambient, "ambient"));
}

zor::Vec4f LightSource::getAmbient() const {
  return fromOsg(lightOf(*m_source).getAmbient());
}

void LightSource::setDiffuse(zor::Vec4f const& diffuse) {
  lightOf(*m_source).setDiffuse(color(diffuse, "diffuse"));
}

zor::Vec4f LightSource::getDiffuse() const {
  return fromOsg(lightOf(*m_source).getDiffuse());
}

void LightSource::setSpecular(zor::Vec4f const& specular) {
  lightOf(*m_source).setSpecular(color(specular, "specular"));
}

zor::Vec4f LightSource::getSpecular() const {
  return fromOsg(lightOf(*m_source).getSpecular());
}

void LightSource::setPosition(zor::Vec4 const& position) {
  if (!position.isFinite() || position == zor::Vec4())
    throw std::invalid_argument("Light source: the position is zero or not finite");
  lightOf(*m_source).setPosition(
      osg::Vec4(osg::Vec4d(position.x(), position.y(), position.z(), position.w())));
}

zor::Vec4 LightSource::getPosition() const {
  return zor::Vec4(fromOsg(lightOf(*m_source).getPosition()));
}

void LightSource::setDirection(zor::Vec3 const& direction) {
  osg::Vec3d unit(direction.x(), direction.y(), direction.z());
  if (!unit.valid() || unit.normalize() == 0.0)
    throw std::invalid_argument("Light source: the direction is zero or not finite");
  lightOf(*m_source).setDirection(osg::Vec3(unit));
}

zor::Vec3 LightSource::getDirection() const {
  osg::Vec3 const& direction = lightOf(*m_source).getDirection();
  return {direction.x(), direction.y(), direction.z()};
}

void LightSource::setConstantAttenuation(float attenuation) {
  lightOf(*m_source).setConstantAttenuation(notNegative(attenuation, "constant attenuation"));
}

float LightSource::getConstantAttenuation() const {
  return lightOf(*m_source).getConstantAttenuation();
}

void LightSource::setLinearAttenuation(float attenuation) {
  lightOf(*m_source).setLinearAttenuation(notNegative(attenuation, "linear attenuation"));
}

float LightSource::getLinearAttenuation() const {
  return lightOf(*m_source).getLinearAttenuation();
}

void LightSource::setQuadraticAttenuation(float attenuation) {
  lightOf(*m_source).setQuadraticAttenuation(notNegative(attenuation, "quadratic attenuation"));
}

float LightSource::getQuadraticAttenuation() const {
  return lightOf(*m_source).getQuadraticAttenuation();
}

void LightSource::setSpotExponent(float exponent) {
  if (!(exponent >= 0.0f && exponent <= 128.0f))
    throw std::invalid_argument("Light source: spot exponent " + std::to_string(exponent) +
                                " is not 0 to 128");
  lightOf(*m_source).setSpotExponent(exponent);
}

float LightSource::getSpotExponent() const {
  return lightOf(*m_source).getSpotExponent();
}

void LightSource::setSpotCutoff(float cutoff) {
  if (!((cutoff >= 0.0f && cutoff <= 90.0f) || cutoff == 180.0f))
    throw std::invalid_argument("Light source: spot cutoff " + std::to_string(cutoff) +
                                " degrees is neither 0 to 90 nor 180");
  lightOf(*m_source).setSpotCutoff(cutoff);
}

float LightSource::getSpotCutoff() const {
  return lightOf(*m_source).getSpotCutoff();
}

} // namespace zorOSG
