#pragma once

#include <zorCollide/Shape.h>

namespace zorCollide {

/** A box along the axes of its frame, centred at the origin. */
class Box : public Shape {
public:
  /** \param halfExtents - half the size along each axis (m); each must be positive and finite, else
   * std::invalid_argument */
  explicit Box(zor::Vec3 const& halfExtents);

  /**
   * \param x - half the size along x (m), positive
   * \param y - half the size along y (m), positive
   * \param z - half the size along z (m), positive
   */
  Box(zor::Real x, zor::Real y, zor::Real z);

  /** \param halfExtents - half the size along each axis (m), positive */
  void setHalfExtents(zor::Vec3 const& halfExtents);
  /** \return half the size along each axis (m) */
  zor::Vec3 getHalfExtents() const { return m_halfExtents; }

protected:
  ~Box() override = default;

private:
  zor::Vec3 m_halfExtents;
};

} // namespace zorCollide
