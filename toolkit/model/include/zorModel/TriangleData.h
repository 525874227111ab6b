#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>

namespace zorModel {

/** A triangle of a surface under pressure: its corners and the pressure at each. */
class TriangleData {
public:
  /** A triangle without area or pressure at the origin. */
  TriangleData() = default;

  /**
   * \param vertex0 - first corner (m)
   * \param vertex1 - second corner (m), counter-clockwise seen from outside
   * \param vertex2 - third corner (m)
   * \param pressure0 - pressure at the first corner (Pa)
   * \param pressure1 - pressure at the second corner (Pa)
   * \param pressure2 - pressure at the third corner (Pa)
   * A number that is not finite throws std::invalid_argument.
   */
  TriangleData(zor::Vec3 const& vertex0, zor::Vec3 const& vertex1, zor::Vec3 const& vertex2,
               zor::Real pressure0 = 0.0, zor::Real pressure1 = 0.0, zor::Real pressure2 = 0.0);

  /**
   * \param index - 0 to 2, else std::out_of_range
   * \return the corner (m)
   */
  zor::Vec3 getVertex(zor::UInt index) const;
  /**
   * \param index - 0 to 2, else std::out_of_range
   * \param vertex - the corner (m); one that is not finite throws std::invalid_argument
   */
  void setVertex(zor::UInt index, zor::Vec3 const& vertex);

  /**
   * \param index - 0 to 2, else std::out_of_range
   * \return the pressure at the corner (Pa)
   */
  zor::Real getPressure(zor::UInt index) const;
  /**
   * \param index - 0 to 2, else std::out_of_range
   * \param pressure - the pressure at the corner (Pa); one that is not finite throws std::invalid_argument
   */
  void setPressure(zor::UInt index, zor::Real pressure);

  /** \return the direction to the outside, of length 1; null for a triangle without area */
  zor::Vec3 getNormal() const;
  /** \return area (m2) */
  zor::Real getArea() const;
  /** \return force of the pressure, which varies evenly between the corners, on the surface from outside (N)
   */
  zor::Vec3 getForce() const;
  /** \return the point where that force acts (m); the middle of a triangle without pressure */
  zor::Vec3 getCenterOfPressure() const;

  bool operator==(TriangleData const& other) const = default;

private:
  zor::Vec3 m_vertices[3];
  zor::Real m_pressures[3] = {0.0, 0.0, 0.0};
};

} // namespace zorModel
