#pragma once

#include <zorUtil/Spline.h>

namespace zorUtil {

/**
 * Spline whose second derivative is continuous, and null at both ends: what follows it at an even pace of the
 * parameter meets no jump of acceleration, as a robot should. Moving a point changes the whole curve, if
 * little far away.
 */
class NaturalSpline : public Spline {
public:
  NaturalSpline() = default;

  /** \param points - points (m); one that is not finite throws std::invalid_argument */
  explicit NaturalSpline(zor::Vec3Vector const& points);

protected:
  ~NaturalSpline() override = default;
  Ends getDerivatives(zor::UInt index) const override;
  void pointsChanged() override;

private:
  zor::Vec3Vector m_derivatives; // at each point
};

} // namespace zorUtil
