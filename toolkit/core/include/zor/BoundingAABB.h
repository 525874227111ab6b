#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/Vec3.h>

#include <limits>

namespace zor {

/** Box along the axes that encloses points; an empty one encloses none. */
class BoundingAABB {
public:
  BoundingAABB() = default;
  /** The box between its lower and upper corner. */
  BoundingAABB(Vec3 const& min, Vec3 const& max) : m_min(min), m_max(max) {}

  /** \return true if it encloses nothing */
  bool isEmpty() const { return m_min.x() > m_max.x() || m_min.y() > m_max.y() || m_min.z() > m_max.z(); }
  /** \return the lower corner */
  Vec3 const& min() const { return m_min; }
  /** \return the upper corner */
  Vec3 const& max() const { return m_max; }

  /** \return the middle; meaningless for an empty box */
  Vec3 mid() const { return (m_min + m_max) * 0.5; }
  /** \return the edge lengths, null for an empty box */
  Vec3 size() const { return isEmpty() ? Vec3() : m_max - m_min; }

  /** Grows the box to enclose a point. */
  void expand(Vec3 const& point) {
    m_min = Vec3::min(m_min, point);
    m_max = Vec3::max(m_max, point);
  }

  /** Grows the box to enclose another one. */
  void expand(BoundingAABB const& other) {
    if (!other.isEmpty()) {
      expand(other.m_min);
      expand(other.m_max);
    }
  }

  /** \return true if a point lies inside, surface included */
  bool contains(Vec3 const& p) const {
    return m_min.x() <= p.x() && p.x() <= m_max.x() && m_min.y() <= p.y() && p.y() <= m_max.y() &&
           m_min.z() <= p.z() && p.z() <= m_max.z();
  }

  /** \return the box around this box after a transform */
  BoundingAABB transformed(AffineMatrix4x4 const& matrix) const {
    BoundingAABB result;
    for (int corner = 0; corner < 8 && !isEmpty(); ++corner) {
      result.expand(
          matrix.transformPoint(Vec3(corner & 1 ? m_max.x() : m_min.x(), corner & 2 ? m_max.y() : m_min.y(),
                                     corner & 4 ? m_max.z() : m_min.z())));
    }
    return result;
  }

  /** \return true for equal corners, and for two empty boxes */
  bool operator==(BoundingAABB const& other) const {
    return isEmpty() ? other.isEmpty() : m_min == other.m_min && m_max == other.m_max;
  }

private:
  static constexpr Real LIMIT = std::numeric_limits<Real>::infinity();
  Vec3 m_min{LIMIT, LIMIT, LIMIT};
  Vec3 m_max{-LIMIT, -LIMIT, -LIMIT};
};

} // namespace zor
