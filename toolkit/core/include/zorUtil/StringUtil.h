#pragma once

#include <zor/Types.h>

#include <vector>

namespace zorUtil {

/** \return the parts of a text between separators, empty parts included; one part for an empty text */
std::vector<zor::String> split(zor::String const& text, char separator);

/** \return the text without white space at its ends */
zor::String trim(zor::String const& text);

/** \return the text with the ASCII letters in lower case */
zor::String toLower(zor::String const& text);

} // namespace zorUtil
