#include "NearestWord.h"

#include <algorithm>
#include <cctype>

namespace zorIO {

namespace {

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Letters to insert, drop, replace or exchange with their neighbour.
std::size_t slipsBetween(std::string const& a, std::string const& b) {
  std::vector<std::size_t> beforeLast, last(b.size() + 1), row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) {
    last[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
      bool const exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
    }
    beforeLast = last;
    last = row;
  }
  return last[b.size()];
}

} // namespace

std::string nearestWord(std::string const& word, std::vector<std::string> const& words) {
  std::string const written = lowerCase(word);
  std::string nearest;
  std::size_t fewest = std::max<std::size_t>(written.size() / 3, 1) + 1; // more is another word
  for (std::string const& candidate : words) {
    std::string const name = lowerCase(candidate);
    bool const begins = written.size() > 3 && name.starts_with(written);
    std::size_t const slips = begins ? 0 : slipsBetween(written, name);
    if (slips < fewest) {
      fewest = slips;
      nearest = candidate;
    }
  }
  return nearest;
}

} // namespace zorIO
