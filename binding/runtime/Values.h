#pragma once

#include <array>
#include <cstddef>
#include <functional>
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

/** \return the shortest text that reads back as the same number, without ".0" */
std::string numberText(double number);
/** \return the shortest text that reads back as the same number in single precision */
std::string numberText(float number);

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
  Value result(a);
  for (std::size_t i = 0; i < Count; ++i) {
    components(result)[i] = operation(components(a)[i], components(b)[i]);
  }
  return result;
}

template <std::size_t Count, class Value, class Operation>
Value mapped(Value const& a, Operation operation) {
  Value result(a);
  for (std::size_t i = 0; i < Count; ++i) {
    components(result)[i] = operation(components(a)[i]);
  }
  return result;
}

template <std::size_t Count, class Value, class Scalar>
Value scaled(Value const& a, Scalar factor) {
  return mapped<Count>(a, [factor](auto component) { return component * factor; });
}

} // namespace zorBinding
