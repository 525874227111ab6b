#pragma once

#include <functional>
#include <utility>

namespace zor {

/** Copyable value that holds a function without parameters; calling an empty one does nothing. */
class Callback {
public:
  Callback() = default;
  explicit Callback(std::function<void()> function) : m_function(std::move(function)) {}

  /** \return true if there is a function to call */
  bool isValid() const { return static_cast<bool>(m_function); }

  /** Calls the function, if there is one; what it throws passes through. */
  void call() const {
    if (m_function) {
      m_function();
    }
  }

  void operator()() const { call(); }

  /** Forgets the function. */
  void clear() { m_function = nullptr; }

private:
  std::function<void()> m_function;
};

} // namespace zor
