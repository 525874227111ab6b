#include <zor/Plane.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace zor {

namespace {
[[noreturn]] void throwNoNormal(Vec3 const& normal) {
  std::ostringstream text;
  text << "a plane needs a finite normal that is not null, not " << normal;
  throw std::invalid_argument(text.str());
}

// As far as rounding lets a normal have it: such a plane, made of its numbers once more, is the same one.
bool hasUnitLength(Vec3 const& normal) {
  return std::abs(normal.length2() - 1.0) < 8 * std::numeric_limits<Real>::epsilon();
}

Vec3 unit(Vec3 const& normal) {
  if (hasUnitLength(normal)) {
    return normal;
  }
  Vec3 result(normal);
  if (!normal.isFinite() || result.normalize() == 0.0 || !result.isFinite()) {
    throwNoNormal(normal);
  }
  return result;
}

Real finite(Real value) {
  if (!std::isfinite(value)) {
    throw std::invalid_argument("the position of a plane must be finite");
  }
  return value;
}
} // namespace

Plane::Plane(Vec3 const& normal, Vec3 const& point)
    : m_normal(unit(normal)), m_d(finite(-(m_normal * point))) {}

Plane::Plane(Real a, Real b, Real c, Real d)
    : m_normal(unit(Vec3(a, b, c))),
      m_d(finite(hasUnitLength(Vec3(a, b, c)) ? d : d / Vec3(a, b, c).length())) {}

Plane::Plane(Vec3 const& p1, Vec3 const& p2, Vec3 const& p3) : Plane((p2 - p1) ^ (p3 - p1), p1) {}

void Plane::setNormal(Vec3 const& normal) {
  *this = Plane(normal, getPoint());
}

void Plane::setPoint(Vec3 const& point) {
  *this = Plane(m_normal, point);
}

std::ostream& operator<<(std::ostream& stream, Plane const& plane) {
  return stream << plane.a() << " " << plane.b() << " " << plane.c() << " " << plane.d();
}

} // namespace zor
