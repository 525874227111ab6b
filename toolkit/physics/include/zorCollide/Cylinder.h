#pragma once

#include <zorCollide/Shape.h>

namespace zorCollide {

/** A cylinder; its axis is local y and its centre the origin. */
class Cylinder : public Shape {
public:
  /**
   * \param radius - radius (m), positive and finite, else std::invalid_argument
   * \param height - length along the axis (m), positive and finite, else std::invalid_argument
   */
  Cylinder(zor::Real radius, zor::Real height);

  /** \param radius - radius (m), positive */
  void setRadius(zor::Real radius);
  /** \return radius (m) */
  zor::Real getRadius() const { return m_radius; }

  /** \param height - length along the axis (m), positive */
  void setHeight(zor::Real height);
  /** \return length along the axis (m) */
  zor::Real getHeight() const { return m_height; }

protected:
  ~Cylinder() override = default;

private:
  zor::Real m_radius;
  zor::Real m_height;
};

} // namespace zorCollide
