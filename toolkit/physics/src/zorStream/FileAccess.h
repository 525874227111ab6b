#pragma once

#include <string>

namespace zorStream {

/** \return the bytes of a file \throws std::runtime_error that names the file */
std::string readBytes(std::string const& filename);

/**
 * Replaces a file by other bytes in one go: whatever fails, the file is as it was, or not there. A link is
 * followed. What is no ordinary file, such as a pipe, is written straight to.
 * \throws std::runtime_error that names the file
 */
void writeBytes(std::string const& filename, std::string const& bytes);

} // namespace zorStream
