#include <zorRender/Color.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <string>

namespace zorRender {
namespace {

unsigned int checked(unsigned int index) {
  if (index > 3)
    throw std::out_of_range("Color: index " + std::to_string(index) + " is not 0 to 3");
  return index;
}

} // namespace

float Color::get(unsigned int index) const {
  return m_values[checked(index)];
}

void Color::set(unsigned int index, float value) {
  m_values[checked(index)] = value;
}

bool Color::operator==(Color const& other) const {
  return std::equal(m_values, m_values + 4, other.m_values);
}

std::ostream& operator<<(std::ostream& out, Color const& color) {
  return out << color.r() << " " << color.g() << " " << color.b() << " " << color.a();
}

} // namespace zorRender
