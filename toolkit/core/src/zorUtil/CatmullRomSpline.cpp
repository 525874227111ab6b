#include <zorUtil/CatmullRomSpline.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace zorUtil {

CatmullRomSpline::CatmullRomSpline(zor::Real parameter) {
  setParameter(parameter);
}

CatmullRomSpline::CatmullRomSpline(zor::Vec3Vector const& points, zor::Real parameter)
    : CatmullRomSpline(parameter) {
  setPoints(points);
}

void CatmullRomSpline::setParameter(zor::Real parameter) {
  if (!(parameter >= 0 && parameter <= 1)) {
    throw std::invalid_argument("CatmullRomSpline: the parameter must be 0 to 1, not " +
                                std::to_string(parameter));
  }
  m_parameter = parameter;
}

zor::Vec3 CatmullRomSpline::pointBefore(zor::UInt index) const {
  zor::Vec3Vector const& points = getPoints();
  return index > 0 ? points[index - 1] : points[0] * 2 - points[1];
}

zor::Vec3 CatmullRomSpline::pointAfter(zor::UInt index) const {
  zor::Vec3Vector const& points = getPoints();
  return index + 1 < points.size() ? points[index + 1] : points[index] * 2 - points[index - 1];
}

zor::Real CatmullRomSpline::knotDistance(zor::Vec3 const& a, zor::Vec3 const& b) const {
  return std::pow(a.distance(b), m_parameter);
}

Spline::Ends CatmullRomSpline::getDerivatives(zor::UInt index) const {
  zor::Vec3 const p[] = {pointBefore(index), getPoints()[index], getPoints()[index + 1],
                         pointAfter(index + 1)};
  zor::Real knots[] = {knotDistance(p[0], p[1]), knotDistance(p[1], p[2]), knotDistance(p[2], p[3])};
  // Points that coincide count as if they were as far apart as their neighbours.
  if (!(knots[1] > 0)) {
    knots[1] = 1;
  }
  knots[0] = knots[0] > 0 ? knots[0] : knots[1];
  knots[2] = knots[2] > 0 ? knots[2] : knots[1];
  zor::Vec3 const step = (p[2] - p[1]) / knots[1];
  zor::Vec3 const start = (p[1] - p[0]) / knots[0] - (p[2] - p[0]) / (knots[0] + knots[1]) + step;
  zor::Vec3 const end = step - (p[3] - p[1]) / (knots[1] + knots[2]) + (p[3] - p[2]) / knots[2];
  return {start * knots[1], end * knots[1]};
}

} // namespace zorUtil
