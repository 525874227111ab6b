#pragma once

#include <zorCollide/Shape.h>

namespace zorCollide {

/** A cone with its tip at +height/2 and its base at -height/2 on local y. */
class Cone : public Shape {
public:
  /**
   * \param radius - radius (m), positive and finite, else std::invalid_argument
   * \param height - distance from base to tip (m), positive and finite, else std::invalid_argument
   */
  Cone(zor::Real radius, zor::Real height);

  /** \param radius - radius (m), positive */
  void setRadius(zor::Real radius);
  /** \return radius (m) */
  zor::Real getRadius() const { return m_radius; }

  /** \param height - distance from base to tip (m), positive */
  void setHeight(zor::Real height);
  /** \return distance from base to tip (m) */
  zor::Real getHeight() const { return m_height; }

protected:
  ~Cone() override = default;

private:
  zor::Real m_radius;
  zor::Real m_height;
};

} // namespace zorCollide
