#pragma once

#include <zor/Types.h>

namespace zorWire {

/** What a wire is made of and how finely it is resolved, with the stiffness that follows for a full round
 * section. */
class WireParameters {
public:
  /**
   * \param radius - radius (m), positive, else std::invalid_argument
   * \param youngsModulus - stiffness of the material (Pa), positive, else std::invalid_argument
   * \param density - density (kg/m3), positive, else std::invalid_argument
   * \param resolution - lumps of mass a metre, positive, else std::invalid_argument
   */
  explicit WireParameters(zor::Real radius = 0.01, zor::Real youngsModulus = 2.0e11,
                          zor::Real density = 7800.0, zor::Real resolution = 4.0);

  /** \return radius (m) */
  zor::Real getRadius() const { return m_radius; }
  /** \return stiffness of the material (Pa) */
  zor::Real getYoungsModulus() const { return m_youngsModulus; }
  /** \return density (kg/m3) */
  zor::Real getDensity() const { return m_density; }
  /** \return lumps of mass a metre */
  zor::Real getResolution() const { return m_resolution; }

  /** \return area of the section (m2) */
  zor::Real getArea() const;
  /** \return mass of a metre (kg/m) */
  zor::Real getMassPerLength() const;
  /** \return force that doubles the length, if the wire stood it (N) */
  zor::Real getStretchStiffness() const;
  /** \return moment times radius of curvature (N m2) */
  zor::Real getBendStiffness() const;

  bool operator==(WireParameters const& other) const = default;

private:
  zor::Real m_radius;
  zor::Real m_youngsModulus;
  zor::Real m_density;
  zor::Real m_resolution;
};

} // namespace zorWire
