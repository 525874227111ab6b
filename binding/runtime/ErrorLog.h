#pragma once

#include <exception>

namespace zorBinding {

/**
 * Writes an error of a wrapped call to the toolkit's log.
 * \param function - name of the wrapper
 * \param file - interface file that declares the guard
 * \param line - line of the declaration
 * \param error - the error
 */
void logError(char const* function, char const* file, int line, std::exception const& error) noexcept;

} // namespace zorBinding
