#pragma once

#include <string>
#include <vector>

namespace zorIO {

/**
 * Finds what somebody has probably meant to write.
 * \param word - what was written, in any case
 * \param words - what could have been
 * \return the word that is fewest slips of the pen away, or begins with what was written; empty if none is
 * near
 */
std::string nearestWord(std::string const& word, std::vector<std::string> const& words);

} // namespace zorIO
