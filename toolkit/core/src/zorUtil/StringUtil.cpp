#include <zorUtil/StringUtil.h>

namespace zorUtil {

std::vector<zor::String> split(zor::String const& text, char separator) {
  std::vector<zor::String> parts;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != zor::String::npos; end = text.find(separator, start)) {
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  parts.push_back(text.substr(start));
  return parts;
}

zor::String trim(zor::String const& text) {
  char const* const white = " \t\r\n\v\f";
  std::size_t const first = text.find_first_not_of(white);
  return first == zor::String::npos ? zor::String()
                                    : text.substr(first, text.find_last_not_of(white) - first + 1);
}

zor::String toLower(zor::String const& text) {
  zor::String result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    }
  }
  return result;
}

} // namespace zorUtil
