#include <zorUtil/NaturalSpline.h>

namespace zorUtil {

NaturalSpline::NaturalSpline(zor::Vec3Vector const& points) {
  setPoints(points);
}

// The second derivatives of neighbouring parts agree: a tridiagonal system of the derivatives at the points,
//   2 m[0] + m[1] = 3 (p[1] - p[0]),  m[i-1] + 4 m[i] + m[i+1] = 3 (p[i+1] - p[i-1]),  and so at the end.
void NaturalSpline::pointsChanged() {
  zor::Vec3Vector const& p = getPoints();
  std::size_t const last = p.empty() ? 0 : p.size() - 1;
  m_derivatives.clear();
  if (last == 0) {
    return;
  }
  zor::RealVector factors;
  for (std::size_t i = 0; i <= last; ++i) {
    bool const isEnd = i == 0 || i == last;
    zor::Vec3 const right = (p[i == last ? i : i + 1] - p[i == 0 ? i : i - 1]) * 3;
    zor::Real const pivot = (isEnd ? 2.0 : 4.0) - (i == 0 ? 0.0 : factors[i - 1]);
    factors.push_back(1 / pivot);
    m_derivatives.push_back((i == 0 ? right : right - m_derivatives[i - 1]) / pivot);
  }
  for (std::size_t i = last; i-- > 0;) {
    m_derivatives[i] -= m_derivatives[i + 1] * factors[i];
  }
}

Spline::Ends NaturalSpline::getDerivatives(zor::UInt index) const {
  return {m_derivatives[index], m_derivatives[index + 1]};
}

} // namespace zorUtil
