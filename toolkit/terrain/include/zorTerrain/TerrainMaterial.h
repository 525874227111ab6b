#pragma once

#include <zor/Object.h>
#include <zor/Types.h>

namespace zorTerrain {

/** What soil is made of. The default is dry sand. */
class TerrainMaterial : public zor::Object {
public:
  /** \param name - name */
  explicit TerrainMaterial(zor::String const& name = "");

  /** \param density - of undisturbed soil (kg/m3), positive, else std::invalid_argument */
  void setDensity(zor::Real density);
  /** \return density of undisturbed soil (kg/m3) */
  zor::Real getDensity() const { return m_density; }

  /** \param angle - of internal friction (radians), 0 to less than pi / 2, else std::invalid_argument */
  void setFrictionAngle(zor::Real angle);
  /** \return angle of internal friction (radians) */
  zor::Real getFrictionAngle() const { return m_frictionAngle; }

  /** \param cohesion - shear strength without pressure (Pa), not negative, else std::invalid_argument */
  void setCohesion(zor::Real cohesion);
  /** \return shear strength without pressure (Pa) */
  zor::Real getCohesion() const { return m_cohesion; }

  /** \param swellFactor - volume of loose soil by that of undisturbed, at least 1, else std::invalid_argument
   */
  void setSwellFactor(zor::Real swellFactor);
  /** \return volume of loose soil by that of undisturbed */
  zor::Real getSwellFactor() const { return m_swellFactor; }

  /** \return density of loose soil (kg/m3) */
  zor::Real getLooseDensity() const { return m_density / m_swellFactor; }

  /**
   * \param pressure - on the plane of failure (Pa), tension negative
   * \return the shear stress at which the soil fails there (Pa), by Mohr and Coulomb; 0 where tension pulls
   * it apart
   */
  zor::Real getShearStrength(zor::Real pressure) const;

protected:
  ~TerrainMaterial() override = default;

private:
  zor::Real m_density = 1600.0;
  zor::Real m_frictionAngle = zor::degreesToRadians(35.0);
  zor::Real m_cohesion = 0.0;
  zor::Real m_swellFactor = 1.15;
};

} // namespace zorTerrain
