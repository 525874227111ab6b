#pragma once

#include <memory>

#include <zor/Types.h>

namespace zor {

/**
 * One quantity of all particles of a system, a row each: the system's own memory, not a copy. In Python it
 * has the buffer protocol, so that numpy.asarray(...) shows it and writes to it.
 *
 * It shows the particles that there were when it was asked for. Ask again after particles were added or
 * removed: an old one stays valid memory, but may show what is no longer in use.
 */
class ParticleArray {
public:
#ifndef SWIG
  enum class Element { REAL, FLOAT, BYTE, INTEGER };

  template <class Row, class Scalar>
  static ParticleArray of(std::shared_ptr<Row[]> const& rows, zor::UInt count, Element element,
                          bool writable) {
    ParticleArray array;
    array.m_owner = rows;
    array.m_data = rows.get();
    array.m_rows = count;
    array.m_columns = sizeof(Row) / sizeof(Scalar);
    array.m_element = element;
    array.m_writable = writable;
    return array;
  }

  void* data() const { return m_data; }
  Element element() const { return m_element; }
#endif

  /** \return number of particles */
  zor::UInt getNumRows() const { return m_rows; }
  /** \return numbers of one particle */
  zor::UInt getNumColumns() const { return m_columns; }
  /** \return false if it can only be read */
  bool isWritable() const { return m_writable; }

private:
  ParticleArray() = default;

  std::shared_ptr<void> m_owner;
  void* m_data = nullptr;
  zor::UInt m_rows = 0;
  zor::UInt m_columns = 1;
#ifndef SWIG
  Element m_element = Element::REAL;
#endif
  bool m_writable = true;
};

} // namespace zor
