#include <zorUtil/Spline.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace zorUtil {

namespace {

zor::Vec3 const& checkFinite(zor::Vec3 const& point) {
  if (!point.isFinite()) {
    throw std::invalid_argument("Spline: a point is not finite");
  }
  return point;
}

// Gauss's five points: exact for polynomials of degree 9, with which pieces of a curve's speed are close.
zor::Real const NODES[] = {0.0, 0.5384693101056831, 0.9061798459386640};
zor::Real const WEIGHTS[] = {0.5688888888888889, 0.4786286704993665, 0.2369268850561891};
int const PIECES = 8; // of a part between two points
zor::UInt const MOST_SAMPLES = 10'000'000;

template <class Function>
zor::Real integrate(Function const& function, zor::Real from, zor::Real to) {
  zor::Real const half = (to - from) / 2;
  zor::Real const middle = (from + to) / 2;
  zor::Real sum = WEIGHTS[0] * function(middle);
  for (int i = 1; i < 3; ++i) {
    sum += WEIGHTS[i] * (function(middle - half * NODES[i]) + function(middle + half * NODES[i]));
  }
  return sum * half;
}

} // namespace

/** A place of the curve: the cubic a + b u + c u^2 + d u^3 of a part, and u from 0 to 1. */
struct Spline::Place {
  zor::Vec3 a, b, c, d;
  zor::Real u = 0;

  zor::Vec3 derivative(zor::Real at) const { return b + (c * 2 + d * (3 * at)) * at; }

  // Of less than a piece: one formula is exact enough.
  zor::Real length(zor::Real from, zor::Real to) const {
    return integrate([this](zor::Real at) { return derivative(at).length(); }, from, to);
  }
};

void Spline::add(zor::Vec3 const& point) {
  m_points.push_back(checkFinite(point));
  pointsChanged();
}

void Spline::setPoints(zor::Vec3Vector const& points) {
  for (zor::Vec3 const& point : points) {
    checkFinite(point);
  }
  m_points = points;
  pointsChanged();
}

void Spline::setPoint(zor::UInt index, zor::Vec3 const& point) {
  m_points.at(index) = checkFinite(point);
  pointsChanged();
}

zor::Vec3 Spline::getPoint(zor::UInt index) const {
  return m_points.at(index);
}

void Spline::clear() {
  m_points.clear();
  pointsChanged();
}

Spline::Place Spline::find(zor::Real parameter) const {
  if (std::isnan(parameter)) {
    throw std::invalid_argument("Spline: the parameter is not a number");
  }
  if (m_points.empty()) {
    throw std::runtime_error("Spline: there are no points");
  }
  Place place;
  if (m_points.size() == 1) {
    place.a = m_points[0];
    return place;
  }
  auto const parts = m_points.size() - 1;
  zor::Real const inside = std::clamp(parameter, 0.0, static_cast<zor::Real>(parts));
  zor::UInt const index = std::min<zor::UInt>(static_cast<zor::UInt>(inside), parts - 1);
  place.u = inside - static_cast<zor::Real>(index);
  Ends const ends = getDerivatives(index);
  zor::Vec3 const step = m_points[index + 1] - m_points[index];
  place.a = m_points[index];
  place.b = ends.start;
  place.c = step * 3 - ends.start * 2 - ends.end;
  place.d = ends.start + ends.end - step * 2;
  return place;
}

zor::Vec3 Spline::evaluate(zor::Real parameter) const {
  Place const p = find(parameter);
  return p.a + (p.b + (p.c + p.d * p.u) * p.u) * p.u;
}

zor::Vec3 Spline::derivative(zor::Real parameter) const {
  Place const p = find(parameter);
  return p.derivative(p.u);
}

zor::Vec3 Spline::secondDerivative(zor::Real parameter) const {
  Place const p = find(parameter);
  return p.c * 2 + p.d * (6 * p.u);
}

zor::Real Spline::length() const {
  return length(0, static_cast<zor::Real>(m_points.size()));
}

zor::Real Spline::length(zor::Real from, zor::Real to) const {
  if (std::isnan(from) || std::isnan(to)) {
    throw std::invalid_argument("Spline: the parameter is not a number");
  }
  if (from > to) {
    return -length(to, from);
  }
  zor::Real sum = 0;
  for (zor::UInt i = 0; i + 1 < m_points.size(); ++i) {
    auto const start = static_cast<zor::Real>(i);
    zor::Real const first = std::clamp(from - start, 0.0, 1.0);
    zor::Real const last = std::clamp(to - start, 0.0, 1.0);
    if (first < last) {
      Place const part = find(start);
      for (int piece = 0; piece < PIECES; ++piece) {
        zor::Real const width = (last - first) / PIECES;
        sum += part.length(first + piece * width, first + (piece + 1) * width);
      }
    }
  }
  return sum;
}

// Lengths of the curve up to the end of each piece, the start included.
zor::RealVector Spline::pieceLengths() const {
  zor::RealVector lengths(1, 0.0);
  for (zor::UInt i = 0; i + 1 < m_points.size(); ++i) {
    Place const part = find(static_cast<zor::Real>(i));
    for (int piece = 0; piece < PIECES; ++piece) {
      lengths.push_back(lengths.back() +
                        part.length(zor::Real(piece) / PIECES, zor::Real(piece + 1) / PIECES));
    }
  }
  return lengths;
}

zor::Real Spline::parameterAt(zor::Real distance, zor::RealVector const& lengths) const {
  auto const piece =
      static_cast<std::size_t>(std::upper_bound(lengths.begin(), lengths.end(), distance) - lengths.begin());
  if (piece == 0 || piece == lengths.size()) {
    return piece == 0 ? 0.0 : static_cast<zor::Real>(m_points.size() - 1);
  }
  Place const part = find(static_cast<zor::Real>((piece - 1) / PIECES));
  zor::Real const start = static_cast<zor::Real>((piece - 1) % PIECES) / PIECES;
  zor::Real const way = distance - lengths[piece - 1];
  zor::Real low = start;
  zor::Real high = start + 1.0 / PIECES;
  zor::Real u = (low + high) / 2;
  // Newton's method, kept between bounds: the speed may vanish.
  for (int step = 0; step < 60 && high - low > 1e-15; ++step) {
    zor::Real const excess = part.length(start, u) - way;
    (excess > 0 ? high : low) = u;
    zor::Real const next = u - excess / part.derivative(u).length();
    zor::Real const previous = u;
    u = next > low && next < high ? next : (low + high) / 2;
    if (std::abs(u - previous) < 1e-15) {
      break;
    }
  }
  return static_cast<zor::Real>((piece - 1) / PIECES) + u;
}

zor::Real Spline::parameterAt(zor::Real distance) const {
  find(distance); // for its checks
  return parameterAt(distance, pieceLengths());
}

zor::Vec3Vector Spline::sample(zor::UInt count) const {
  if (count < 2 || count > MOST_SAMPLES) {
    throw std::invalid_argument("Spline: the number of samples must be 2 to 10000000, not " +
                                std::to_string(count));
  }
  find(0); // for its checks
  zor::RealVector const lengths = pieceLengths();
  zor::Vec3Vector result;
  result.reserve(count);
  for (zor::UInt i = 0; i + 1 < count; ++i) {
    zor::Real const distance = lengths.back() * static_cast<zor::Real>(i) / static_cast<zor::Real>(count - 1);
    result.push_back(evaluate(parameterAt(distance, lengths)));
  }
  result.push_back(m_points.back());
  return result;
}

} // namespace zorUtil
