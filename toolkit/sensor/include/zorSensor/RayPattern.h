#pragma once

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

namespace zorSensor {

/**
 * Directions in which a scanning lidar sends its rays: layers one above the other, each with rays at even
 * angles. X points ahead, Z up. Rays are numbered layer by layer from below, in a layer from the right to the
 * left.
 */
class RayPattern {
public:
  /**
   * \param horizontalAngle - from the first ray of a layer to the last (radians), above 0 to 2 pi; in a full
   * turn the last would be the first and is left out
   * \param numRaysPerLayer - rays in a layer, at least 2
   * \param verticalAngle - from the lowest layer to the highest (radians), 0 to less than pi, both as far
   * from level
   * \param numLayers - number of layers, at least 1
   * Anything else, and more than 16,777,216 rays, throws std::invalid_argument.
   */
  RayPattern(zor::Real horizontalAngle, zor::UInt32 numRaysPerLayer, zor::Real verticalAngle = 0.0,
             zor::UInt32 numLayers = 1);

  /** \return angle from the first ray of a layer to the last (radians) */
  zor::Real getHorizontalAngle() const { return m_horizontalAngle; }
  /** \return rays in a layer */
  zor::UInt32 getNumRaysPerLayer() const { return m_numRaysPerLayer; }
  /** \return angle from the lowest layer to the highest (radians) */
  zor::Real getVerticalAngle() const { return m_verticalAngle; }
  /** \return number of layers */
  zor::UInt32 getNumLayers() const { return m_numLayers; }
  /** \return number of rays of all layers */
  zor::UInt getNumRays() const { return zor::UInt(m_numRaysPerLayer) * m_numLayers; }

  /**
   * \param index - less than the number of rays, else std::out_of_range
   * \return direction of a ray, of length 1
   */
  zor::Vec3 getDirection(zor::UInt index) const;
  /** \return directions of all rays */
  zor::Vec3Vector getDirections() const;

  bool operator==(RayPattern const& other) const = default;

private:
  zor::Real m_horizontalAngle;
  zor::UInt32 m_numRaysPerLayer;
  zor::Real m_verticalAngle;
  zor::UInt32 m_numLayers;
};

} // namespace zorSensor
