#pragma once

#include <zor/Vec3.h>
#include <zor/Vec4.h>

#include <osg/LightSource>
#include <osg/ref_ptr>

namespace zorOSG {

/**
 * A handle that reads and changes the light of an osg::LightSource with plain vectors. It keeps the light
 * source alive but does not own it: handles of the same light source all change the same light.
 */
class LightSource {
public:
  /**
   * \param lightSource - the light source to work on, with a light in it
   * \throws std::invalid_argument if it is null or has no light
   */
  explicit LightSource(osg::LightSource* lightSource);

  /** \return which OpenGL light the light operates on, from 0 */
  int getLightNum() const;

  /** \param ambient - red, green, blue and alpha of the light that reaches every face alike */
  void setAmbient(zor::Vec4f const& ambient);

  /** \return red, green, blue and alpha of the light that reaches every face alike */
  zor::Vec4f getAmbient() const;

  /** \param diffuse - red, green, blue and alpha of the light that lights faces turned to it */
  void setDiffuse(zor::Vec4f const& diffuse);

  /** \return red, green, blue and alpha of the light that lights faces turned to it */
  zor::Vec4f getDiffuse() const;

  /** \param specular - red, green, blue and alpha of the light in highlights */
  void setSpecular(zor::Vec4f const& specular);

  /** \return red, green, blue and alpha of the light in highlights */
  zor::Vec4f getSpecular() const;

  /**
   * \param position - homogeneous position: with w = 1 a point (m), with w = 0 the direction towards a light
   * that is infinitely far away
   * \throws std::invalid_argument if it is not finite or all zero
   */
  void setPosition(zor::Vec4 const& position);

  /** \return homogeneous position: with w = 1 a point (m), with w = 0 the direction towards the light */
  zor::Vec4 getPosition() const;

  /**
   * \param direction - direction in which a spot light shines, normalised on entry
   * \throws std::invalid_argument if it is not finite or zero
   */
  void setDirection(zor::Vec3 const& direction);

  /** \return direction in which a spot light shines */
  zor::Vec3 getDirection() const;

  /** \param attenuation - part of the fading that does not depend on distance; not negative */
  void setConstantAttenuation(float attenuation);

  /** \return part of the fading that does not depend on distance */
  float getConstantAttenuation() const;

  /** \param attenuation - part of the fading that grows with distance (1/m); not negative */
  void setLinearAttenuation(float attenuation);

  /** \return part of the fading that grows with distance (1/m) */
  float getLinearAttenuation() const;

  /** \param attenuation - part of the fading that grows with distance squared (1/m²); not negative */
  void setQuadraticAttenuation(float attenuation);

  /** \return part of the fading that grows with distance squared (1/m²) */
  float getQuadraticAttenuation() const;

  /** \param exponent - how much a spot light gathers at its axis, 0 (even) to 128 */
  void setSpotExponent(float exponent);

  /** \return how much a spot light gathers at its axis */
  float getSpotExponent() const;

  /** \param cutoff - half the opening angle of a spot light (degrees), 0 to 90, or 180 for all around */
  void setSpotCutoff(float cutoff);

  /** \return half the opening angle of a spot light (degrees), 180 for all around */
  float getSpotCutoff() const;

private:
  osg::ref_ptr<osg::LightSource> m_source;
};

} // namespace zorOSG
