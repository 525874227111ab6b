#pragma once

#include <zor/Vec3.h>

namespace zor {

/** Straight line between two points. */
class Line {
public:
  Line() = default;
  /** The line between two points. */
  Line(Vec3 const& start, Vec3 const& end) : m_start(start), m_end(end) {}

  /** \return the first point */
  Vec3 const& getStart() const { return m_start; }
  /** \return the second point */
  Vec3 const& getEnd() const { return m_end; }
  /** Sets both points. */
  void set(Vec3 const& start, Vec3 const& end) { *this = Line(start, end); }
  /** \return the distance of the points */
  Real length() const { return m_start.distance(m_end); }

  /** \return direction from start to end, of length 1; null for a line without length */
  Vec3 direction() const { return (m_end - m_start).normal(); }

  /** \return the point at a fraction, 0 at the start and 1 at the end */
  Vec3 pointAt(Real fraction) const { return m_start + (m_end - m_start) * fraction; }

  bool operator==(Line const& other) const { return m_start == other.m_start && m_end == other.m_end; }

private:
  Vec3 m_start;
  Vec3 m_end;
};

typedef Vector<Line> LineVector;

} // namespace zor
