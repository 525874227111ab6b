#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

namespace zorBinding {

/** \return the first component of a value type, which holds them in a row */
template <class Value>
auto components(Value& value) {
  if constexpr (requires { value.ptr(); }) {
    return value.ptr();
  } else {
    // Some value types return a copy from their const operator[].
    auto* first = &const_cast<std::remove_const_t<Value>&>(value)[0];
    using Component = std::remove_pointer_t<decltype(first)>;
    return static_cast<std::conditional_t<std::is_const_v<Value>, Component const, Component>*>(first);
  }
}

/**
 * \param index - position, counted from the end if negative
 * \param size - number of components
 * \return the position from the start
 * Throws std::out_of_range "index out of range".
 */
std::size_t checkedIndex(std::ptrdiff_t index, std::size_t size);

/** \return the shortest Python text that reads back as the same number, without ".0" */
std::string numberText(double number);
/** \return the shortest Python text that reads back as the same number in single precision */
std::string numberText(float number);
/** \return the text of a number; of a real one that is whole with ".0" */
template <class Number>
std::string elementText(Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    std::string const text = numberText(number);
    return text.find_first_of(".ef") == std::string::npos ? text + ".0" : text;
  } else {
    return std::to_string(number);
  }
}

/** Throws std::runtime_error with a Python OverflowError pending: a result is no number of its type. */
[[noreturn]] void throwOverflow();

/** \return a result, checked to fit the components where these are integers */
template <class Number, class Result>
Number fitting(Result result) {
  if constexpr (std::is_integral_v<Number>) {
    static_assert(sizeof(Number) < sizeof(Result));
    if (result < std::numeric_limits<Number>::min() || result > std::numeric_limits<Number>::max()) {
      throwOverflow();
    }
  }
  return static_cast<Number>(result);
}

__extension__ typedef __int128 WideInteger;

/** What sums and products of components are computed in, so that those of integers can be checked. */
template <class Number>
using Wide = std::conditional_t<std::is_integral_v<Number>, WideInteger, Number>;

/** \return "Name(1, 2, 3)" */
template <class Value>
std::string valueText(char const* name, Value& value, std::size_t count) {
  auto const* numbers = components(value);
  std::string text = name;
  for (std::size_t i = 0; i < count; ++i) {
    text += i == 0 ? "(" : ", ";
    if constexpr (std::is_floating_point_v<std::remove_cvref_t<decltype(*numbers)>>) {
      text += numberText(numbers[i]);
    } else {
      text += std::to_string(numbers[i]);
    }
  }
  return text + ")";
}

template <std::size_t Count, class Value>
bool equalValues(Value const& a, Value const& b) {
  auto const* left = components(a);
  auto const* right = components(b);
  for (std::size_t i = 0; i < Count; ++i) {
    if (!(left[i] == right[i])) {
      return false;
    }
  }
  return true;
}

template <std::size_t Count, class Value, class Operation>
Value combined(Value const& a, Value const& b, Operation operation) {
  using Number = std::remove_cvref_t<decltype(*components(a))>;
  Value result(a);
  for (std::size_t i = 0; i < Count; ++i) {
    components(result)[i] = fitting<Number>(
        operation(static_cast<Wide<Number>>(components(a)[i]), static_cast<Wide<Number>>(components(b)[i])));
  }
  return result;
}

template <std::size_t Count, class Value, class Operation>
Value mapped(Value const& a, Operation operation) {
  return combined<Count>(a, a, [operation](auto component, auto) { return operation(component); });
}

template <std::size_t Count, class Value, class Scalar>
Value scaled(Value const& a, Scalar factor) {
  return mapped<Count>(a, [factor](auto component) { return component * factor; });
}

/** \return integer components divided as Python's `//` does, by anything but 0 */
template <std::size_t Count, class Value, class Scalar>
Value floorDivided(Value const& a, Scalar divisor) {
  return mapped<Count>(a, [divisor](WideInteger component) {
    WideInteger const quotient = component / divisor;
    bool const isCutUp = component % divisor != 0 && (component < 0) != (divisor < 0);
    return isCutUp ? quotient - 1 : quotient;
  });
}

/** \return the scalar product */
template <std::size_t Count, class Value>
auto dotProduct(Value const& a, Value const& b) {
  using Number = std::remove_cvref_t<decltype(*components(a))>;
  Wide<Number> sum = 0;
  for (std::size_t i = 0; i < Count; ++i) {
    sum += static_cast<Wide<Number>>(components(a)[i]) * static_cast<Wide<Number>>(components(b)[i]);
  }
  return fitting<Number>(sum);
}

/** \return the length */
template <std::size_t Count, class Value>
double lengthOf(Value const& a) {
  double sum = 0;
  for (std::size_t i = 0; i < Count; ++i) {
    auto const component = static_cast<double>(components(a)[i]);
    sum += component * component;
  }
  return std::sqrt(sum);
}

/** \return true if no component differs by more than the tolerance */
template <std::size_t Count, class Value>
bool nearlyEqual(Value const& a, Value const& b, double tolerance) {
  for (std::size_t i = 0; i < Count; ++i) {
    auto const left = static_cast<double>(components(a)[i]);
    auto const right = static_cast<double>(components(b)[i]);
    if (!(left == right || std::abs(left - right) <= tolerance)) {
      return false;
    }
  }
  return true;
}

} // namespace zorBinding
