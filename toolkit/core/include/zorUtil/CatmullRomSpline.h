#pragma once

#include <zorUtil/Spline.h>

namespace zorUtil {

/**
 * Spline whose direction at a point depends on the two neighbours only: moving a point changes the curve
 * nearby, and its direction, not its curvature, is continuous. At the ends the curve runs as if it were
 * mirrored there.
 */
class CatmullRomSpline : public Spline {
public:
  /**
   * \param parameter - weight of the distances between points, 0 (uniform) to 1 (chordal), else
   * std::invalid_argument; with 0.5 the curve has neither cusps nor loops between two points
   */
  explicit CatmullRomSpline(zor::Real parameter = 0.5);

  /**
   * \param points - points (m); one that is not finite throws std::invalid_argument
   * \param parameter - weight of the distances between points, 0 to 1, else std::invalid_argument
   */
  explicit CatmullRomSpline(zor::Vec3Vector const& points, zor::Real parameter = 0.5);

  /** \param parameter - weight of the distances between points, 0 to 1, else std::invalid_argument */
  void setParameter(zor::Real parameter);
  /** \return weight of the distances between points */
  zor::Real getParameter() const { return m_parameter; }

protected:
  ~CatmullRomSpline() override = default;
  Ends getDerivatives(zor::UInt index) const override;

private:
  zor::Vec3 pointBefore(zor::UInt index) const;
  zor::Vec3 pointAfter(zor::UInt index) const;
  zor::Real knotDistance(zor::Vec3 const& a, zor::Vec3 const& b) const;

  zor::Real m_parameter = 0.5;
};

} // namespace zorUtil
