#pragma once

#include <string>

namespace zorOSG {

/** Path of a file: as named, on the resource path, or where the scene-graph library looks. Empty if missing.
 */
std::string findResourceFile(std::string const& filename);

/** The folders in which findResourceFile looks, for messages. */
std::string searchedFolders();

/** Logs an error: what could not be read, and why. */
void logReadError(std::string const& what, std::string const& filename, std::string const& why);

/** Logs that a file is missing, with the folders in which it was sought. */
void logMissingFile(std::string const& what, std::string const& filename);

} // namespace zorOSG
