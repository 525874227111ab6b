#include "ResourceFile.h"

#include <filesystem>

#include <osgDB/FileUtils>
#include <osgDB/Registry>

#include <zor/Notify.h>
#include <zorIO/Environment.h>

namespace zorOSG {

std::string findResourceFile(std::string const& filename) {
  if (filename.empty())
    return {};
  std::string const found = zorIO::Environment::instance().find(filename);
  return found.empty() ? osgDB::findDataFile(filename) : found;
}

std::string searchedFolders() {
  std::error_code ignored;
  std::string result = std::filesystem::current_path(ignored).string();
  for (std::string const& folder : zorIO::Environment::instance().getFilePath().getFolders())
    result += ", " + folder;
  for (std::string const& folder : osgDB::Registry::instance()->getDataFilePathList())
    result += ", " + folder;
  return result;
}

void logReadError(std::string const& what, std::string const& filename, std::string const& why) {
  zor::notify(zor::Notify::NOTIFY_ERROR)
      << what << " \"" << filename << "\" cannot be read: " << why << zor::endMessage;
}

void logMissingFile(std::string const& what, std::string const& filename) {
  std::string const reason =
      std::filesystem::path(filename).is_absolute()
          ? "no such file"
          : "no such file; searched " + searchedFolders() + " (set ZOR_FILE_PATH to add folders)";
  logReadError(what, filename, reason);
}

} // namespace zorOSG
