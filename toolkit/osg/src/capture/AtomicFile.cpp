#include "AtomicFile.h"

#include <osgDB/Registry>
#include <osgDB/WriteFile>

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace zorOSG {

fs::path partialName(fs::path const& path) {
  fs::path partial = path;
  partial.replace_filename("." + path.stem().string() + ".partial" + path.extension().string());
  return partial;
}

void writeImageAtomically(osg::Image const& image, fs::path const& path) {
  requireImageWriter(path.extension().string().empty() ? "" : path.extension().string().substr(1));
  fs::path const partial = partialName(path);
  bool const written = osgDB::writeImageFile(image, partial.string());
  std::error_code error;
  if (written) {
    fs::rename(partial, path, error);
  }
  if (!written || error) {
    std::error_code ignored;
    fs::remove(partial, ignored);
    throw std::runtime_error("cannot write image file '" + path.string() +
                             "': " + (error ? error.message() : "the writer failed"));
  }
}

void requireWritableDirectory(fs::path const& directory) {
  fs::path const dir = directory.empty() ? fs::path(".") : directory;
  std::error_code error;
  fs::create_directories(dir, error);
  if (error) {
    throw std::runtime_error("cannot make output directory '" + dir.string() + "': " + error.message());
  }
  if (!fs::is_directory(dir)) {
    throw std::runtime_error("output path '" + dir.string() + "' is not a directory");
  }
  if (access(dir.c_str(), W_OK | X_OK) != 0) {
    throw std::runtime_error("cannot write to output directory '" + dir.string() +
                             "': " + std::strerror(errno));
  }
}

void requireImageWriter(std::string const& suffix) {
  if (suffix.empty()) {
    throw std::runtime_error("the image file name has no suffix to choose a format by");
  }
  if (!osgDB::Registry::instance()->getReaderWriterForExtension(suffix)) {
    throw std::runtime_error("no image writer for files ending in '." + suffix + "'");
  }
}

} // namespace zorOSG
