#pragma once

#include <zorCollide/Shape.h>

namespace zorCollide {

/** A cylinder with half a sphere on each end; its axis is local y and its centre the origin. */
class Capsule : public Shape {
public:
  /**
   * \param radius - radius (m), positive and finite, else std::invalid_argument
   * \param height - length of the cylindrical part, between the centres of the two half spheres (m), positive
   * and finite, else std::invalid_argument
   */
  Capsule(zor::Real radius, zor::Real height);

  /** \param radius - radius (m), positive */
  void setRadius(zor::Real radius);
  /** \return radius (m) */
  zor::Real getRadius() const { return m_radius; }

  /** \param height - length of the cylindrical part, between the centres of the two half spheres (m),
   * positive */
  void setHeight(zor::Real height);
  /** \return length of the cylindrical part, between the centres of the two half spheres (m) */
  zor::Real getHeight() const { return m_height; }

protected:
  ~Capsule() override = default;

private:
  zor::Real m_radius;
  zor::Real m_height;
};

} // namespace zorCollide
