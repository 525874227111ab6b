#pragma once

#include <cmath>
#include <string>
#include <vector>

/** What the call benchmark calls through every binding: the same inline functions, cheap enough to cost
 * nothing. */
namespace callcost {

struct Value {
  Value(double x = 0, double y = 0, double z = 0) : x(x), y(y), z(z) {}

  double x;
  double y;
  double z;
};

class Link {};

class Other {};

class Probe {
public:
  float getFloat() const { return m_float; }
  void setFloat(float value) { m_float = value; }

  void attach(Probe* other) { m_other = other; }
  Value getValue() const { return {m_float, 0, 0}; }
  void setName(std::string const& name) { m_length = name.size(); }

  int pick(int value) { return value; }
  int pick(double value) { return static_cast<int>(value); }

  int paintOne(Value const& target, std::string const& texture, int unit) {
    return mark(&target, texture.size(), unit);
  }

  // Thirty-one prototypes: who is painted, with what, and two defaults dropped one after the other.
  int paint(Probe* target, std::string const& texture, int unit = 0, float scale = 1, bool repeat = false) {
    return mark(target, texture.size(), unit, scale, repeat);
  }
  int paint(Probe* target, Link* texture, int unit = 0, float scale = 1, bool repeat = false) {
    return mark(target, texture, unit, scale, repeat);
  }
  int paint(Other* target, std::string const& texture, int unit = 0, float scale = 1, bool repeat = false) {
    return mark(target, texture.size(), unit, scale, repeat);
  }
  int paint(Other* target, Link* texture, int unit = 0, float scale = 1, bool repeat = false) {
    return mark(target, texture, unit, scale, repeat);
  }
  int paint(Link* target, std::string const& texture, int unit = 0, float scale = 1, bool repeat = false) {
    return mark(target, texture.size(), unit, scale, repeat);
  }
  int paint(Link* target, Link* texture, int unit = 0, float scale = 1, bool repeat = false) {
    return mark(target, texture, unit, scale, repeat);
  }
  int paint(Value const& target, Link* texture, int unit = 0, float scale = 1) {
    return mark(&target, texture, unit, scale);
  }
  int paint(Value const& target, std::string const& texture, int unit = 0, float scale = 1,
            bool repeat = false) {
    return mark(&target, texture.size(), unit, scale, repeat);
  }

private:
  template <class Target, class Texture>
  int mark(Target const* target, Texture const&, int unit, float scale = 1, bool repeat = false) {
    return (target != nullptr) + unit + static_cast<int>(scale) + static_cast<int>(repeat);
  }

  float m_float{1};
  Probe* m_other{nullptr};
  std::size_t m_length{0};
};

class Listener {
public:
  virtual ~Listener() = default;
  virtual void frame(int) {}
};

/** Calls the listener `count` times. */
inline void fire(Listener& listener, int count) {
  for (int i = 0; i < count; ++i)
    listener.frame(i);
}

} // namespace callcost
