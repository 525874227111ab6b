#pragma once

#include <zor/Referenced.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

namespace zorUtil {

/**
 * A smooth curve through points. The parameter of the curve is 0 at the first point, 1 at the second, and so
 * on; between two points the curve is a cubic polynomial of it. Parameters before the first point and behind
 * the last stand for these.
 */
class Spline : public zor::Referenced {
public:
  /** \param point - further point at the end (m); one that is not finite throws std::invalid_argument */
  void add(zor::Vec3 const& point);

  /** \param points - all points (m); one that is not finite throws std::invalid_argument */
  void setPoints(zor::Vec3Vector const& points);
  /** \return the points (m) */
  zor::Vec3Vector const& getPoints() const { return m_points; }
  /** \return number of points */
  zor::UInt getNumPoints() const { return m_points.size(); }

  /**
   * \param index - less than the number of points, else std::out_of_range
   * \param point - new place of the point (m); one that is not finite throws std::invalid_argument
   */
  void setPoint(zor::UInt index, zor::Vec3 const& point);
  /**
   * \param index - less than the number of points, else std::out_of_range
   * \return the point (m)
   */
  zor::Vec3 getPoint(zor::UInt index) const;

  /** Removes all points. */
  void clear();

  /**
   * \param parameter - where; not a number throws std::invalid_argument
   * \return the point of the curve (m); throws std::runtime_error if the spline has no points
   */
  zor::Vec3 evaluate(zor::Real parameter) const;

  /**
   * \param parameter - where; not a number throws std::invalid_argument
   * \return the derivative by the parameter (m); null for a single point. Throws as evaluate()
   */
  zor::Vec3 derivative(zor::Real parameter) const;

  /**
   * \param parameter - where; not a number throws std::invalid_argument
   * \return the second derivative by the parameter (m); null for a single point. Throws as evaluate()
   */
  zor::Vec3 secondDerivative(zor::Real parameter) const;

  /**
   * \param parameter - where; not a number throws std::invalid_argument
   * \return the direction of the curve, of length 1; null where the derivative is. Throws as evaluate()
   */
  zor::Vec3 tangent(zor::Real parameter) const { return derivative(parameter).normal(); }

  /** \return length of the whole curve (m) */
  zor::Real length() const;

  /**
   * \param from - parameter
   * \param to - parameter
   * \return length of the curve between them (m), negative if they are in reverse order
   */
  zor::Real length(zor::Real from, zor::Real to) const;

  /**
   * \param distance - way along the curve from its start (m); beyond its ends the parameter of the end is
   * returned
   * \return the parameter of the point there. Throws as evaluate()
   */
  zor::Real parameterAt(zor::Real distance) const;

  /**
   * \param count - number of points, 2 to 10,000,000, else std::invalid_argument
   * \return points of the curve at equal ways from each other, its ends included (m). Throws as evaluate()
   */
  zor::Vec3Vector sample(zor::UInt count) const;

protected:
  Spline() = default;
  ~Spline() override = default;

  /** Derivatives of the curve by the parameter at the two ends of the part between two points. */
  struct Ends {
    zor::Vec3 start;
    zor::Vec3 end;
  };

  /** \param index - of the part's first point */
  virtual Ends getDerivatives(zor::UInt index) const = 0;

  /** Called after every change of the points. */
  virtual void pointsChanged() {}

private:
  struct Place;
  Place find(zor::Real parameter) const;
  zor::RealVector pieceLengths() const;
  zor::Real parameterAt(zor::Real distance, zor::RealVector const& lengths) const;

  zor::Vec3Vector m_points;
};

} // namespace zorUtil
