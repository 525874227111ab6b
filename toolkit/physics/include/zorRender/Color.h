#pragma once

#include <iosfwd>

#include <zor/Vec4.h>

namespace zorRender {

/** A colour: red, green, blue and alpha in single precision, 0 to 1 for what a screen can show. */
class Color {
public:
  /** Opaque black. */
  Color() = default;

  /**
   * \param r - red
   * \param g - green
   * \param b - blue
   * \param a - alpha: 0 transparent, 1 opaque
   */
  Color(float r, float g, float b, float a = 1.0f) : m_values{r, g, b, a} {}

  /** \param rgba - red, green, blue and alpha */
  explicit Color(zor::Vec4f const& rgba) : m_values{rgba[0], rgba[1], rgba[2], rgba[3]} {}

  /** \return red */
  float r() const { return m_values[0]; }
  /** \return green */
  float g() const { return m_values[1]; }
  /** \return blue */
  float b() const { return m_values[2]; }
  /** \return alpha: 0 transparent, 1 opaque */
  float a() const { return m_values[3]; }

  /** \param value - the new red */
  void setR(float value) { m_values[0] = value; }
  /** \param value - the new green */
  void setG(float value) { m_values[1] = value; }
  /** \param value - the new blue */
  void setB(float value) { m_values[2] = value; }
  /** \param value - the new alpha */
  void setA(float value) { m_values[3] = value; }

  /**
   * \param index - 0 red, 1 green, 2 blue, 3 alpha; another index throws std::out_of_range
   * \return the component
   */
  float get(unsigned int index) const;

  /**
   * \param index - 0 red, 1 green, 2 blue, 3 alpha; another index throws std::out_of_range
   * \param value - the new component
   */
  void set(unsigned int index, float value);

  /** \return the colour as a vector of red, green, blue and alpha */
  zor::Vec4f asVec4f() const { return zor::Vec4f(m_values[0], m_values[1], m_values[2], m_values[3]); }

  /**
   * \param other - another colour
   * \return true if all four components are equal
   */
  bool operator==(Color const& other) const;

#ifndef SWIG
  float operator[](unsigned int index) const { return m_values[index]; }
  float& operator[](unsigned int index) { return m_values[index]; }
#endif

private:
  float m_values[4] = {0.0f, 0.0f, 0.0f, 1.0f};
};

#ifndef SWIG
std::ostream& operator<<(std::ostream& out, Color const& color);
#endif

} // namespace zorRender
