#pragma once

#include <cstddef>
#include <string_view>

namespace zorModel {

/** Walks through the words of a text, line by line. Numbers are read the same in every locale. */
class TextScanner {
public:
  explicit TextScanner(std::string_view text) : m_rest(text) {}

  /** Goes to the next line. \return false after the last one */
  bool nextLine();

  /** The next word of the line, empty at its end. */
  std::string_view word();

  /** The next word of the line as a number. \throws std::runtime_error naming the line if it is none */
  double number();

  /** Ends the reading. \throws std::runtime_error "line n: what" */
  [[noreturn]] void fail(std::string_view what) const;

private:
  std::string_view m_rest;
  std::string_view m_line;
  std::size_t m_number = 0;
};

} // namespace zorModel
