#pragma once

#include <zorCollide/Shape.h>

namespace zorCollide {

/** A sphere centred at the origin. */
class Sphere : public Shape {
public:
  /** \param radius - radius (m), positive and finite, else std::invalid_argument */
  explicit Sphere(zor::Real radius);

  /** \param radius - radius (m), positive */
  void setRadius(zor::Real radius);
  /** \return radius (m) */
  zor::Real getRadius() const { return m_radius; }

protected:
  ~Sphere() override = default;

private:
  zor::Real m_radius;
};

} // namespace zorCollide
