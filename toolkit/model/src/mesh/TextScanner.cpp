#include "mesh/TextScanner.h"

#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>

namespace zorModel {

namespace {

constexpr std::string_view SPACE = " \t\r\f\v";

} // namespace

bool TextScanner::nextLine() {
  if (m_rest.empty())
    return false;
  std::size_t const end = m_rest.find('\n');
  m_line = m_rest.substr(0, end);
  m_rest = end == std::string_view::npos ? std::string_view() : m_rest.substr(end + 1);
  ++m_number;
  return true;
}

std::string_view TextScanner::word() {
  std::size_t const start = m_line.find_first_not_of(SPACE);
  if (start == std::string_view::npos)
    return m_line = {};
  m_line.remove_prefix(start);
  std::string_view const result = m_line.substr(0, m_line.find_first_of(SPACE));
  m_line.remove_prefix(result.size());
  return result;
}

double TextScanner::number() {
  std::string_view text = word();
  if (text.starts_with('+'))
    text.remove_prefix(1);
  double value = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
    fail(text.empty() ? "a number is missing" : "\"" + std::string(text) + "\" is not a finite number");
  return value;
}

void TextScanner::fail(std::string_view what) const {
  throw std::runtime_error("line " + std::to_string(m_number) + ": " + std::string(what));
}

} // namespace zorModel
