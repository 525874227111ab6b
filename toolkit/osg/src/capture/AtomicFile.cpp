#include "AtomicFile.h"

#include <osgDB/Registry>
#include <osgDB/WriteFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace zorOSG {

namespace {

using Result = osgDB::ReaderWriter::WriteResult;

std::string suffixOf(fs::path const& path) {
  std::string const extension = path.extension().string();
  return extension.empty() ? extension : extension.substr(1);
}

osgDB::ReaderWriter const* writerOf(std::string const& suffix) {
  if (suffix.empty()) {
    throw std::runtime_error("the image file name has no suffix to choose a format by");
  }
  auto* const writer = osgDB::Registry::instance()->getReaderWriterForExtension(suffix);
  if (!writer) {
    throw std::runtime_error("no image writer for files ending in '." + suffix + "'");
  }
  return writer;
}

std::runtime_error failure(fs::path const& path, std::string const& reason) {
  return std::runtime_error("cannot write image file '" + path.string() + "': " + reason);
}

/** \return the bytes of the file; nothing if the writer can only write files. */
std::optional<std::string> encode(osgDB::ReaderWriter const& writer, osg::Image const& image) {
  // Twice as fast for a fifth more bytes; other formats ignore it.
  static osg::ref_ptr<osgDB::Options const> const options = new osgDB::Options("PNG_COMPRESSION 3");
  std::ostringstream stream;
  Result const result = writer.writeImage(image, stream, options);
  if (!result.success() || !stream) {
    return std::nullopt;
  }
  std::string bytes = std::move(stream).str();
  return bytes.empty() ? std::nullopt : std::optional<std::string>(std::move(bytes));
}

/** Writes by the system's own calls: streams tell of a full disk too late or not at all. */
void writeBytes(fs::path const& path, std::string const& bytes) {
  int const file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  int error = file < 0 ? errno : 0;
  for (std::size_t done = 0; !error && done < bytes.size();) {
    ssize_t const written = write(file, bytes.data() + done, bytes.size() - done);
    if (written > 0) {
      done += static_cast<std::size_t>(written);
    } else if (written == 0 || errno != EINTR) {
      error = written == 0 ? ENOSPC : errno;
    }
  }
  if (file >= 0 && close(file) != 0 && !error) {
    error = errno;
  }
  if (error) {
    throw std::system_error(error, std::generic_category());
  }
}

void writeFile(osg::Image const& image, fs::path const& path) {
  osgDB::ReaderWriter const& writer = *writerOf(suffixOf(path));
  if (auto const bytes = encode(writer, image)) {
    writeBytes(path, *bytes);
    return;
  }
  Result const result = writer.writeImage(image, path.string());
  if (!result.success()) {
    throw std::runtime_error(result.message().empty() ? "the writer failed" : result.message());
  }
}

} // namespace

fs::path partialName(fs::path const& path) {
  fs::path partial = path;
  partial.replace_filename("." + path.stem().string() + ".partial" + path.extension().string());
  return partial;
}

void writeImageAtomically(osg::Image const& image, fs::path const& path) {
  fs::path const partial = partialName(path);
  try {
    writeFile(image, partial);
    fs::rename(partial, path);
  } catch (std::exception const& error) {
    std::error_code ignored;
    fs::remove(partial, ignored);
    auto const* const system = dynamic_cast<std::system_error const*>(&error);
    throw failure(path, system ? system->code().message() : error.what());
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
  osgDB::ReaderWriter const& writer = *writerOf(suffix);
  osg::ref_ptr<osg::Image> const picture = new osg::Image;
  picture->allocateImage(2, 2, 1, GL_RGB, GL_UNSIGNED_BYTE);
  std::memset(picture->data(), 0, picture->getTotalSizeInBytes());
  if (encode(writer, *picture)) {
    return;
  }
  // Some write only files; what is no writer of images says so of any.
  auto const status = writer.writeImage(*picture, "/dev/null/picture." + suffix).status();
  if (status == Result::NOT_IMPLEMENTED || status == Result::FILE_NOT_HANDLED) {
    throw std::runtime_error("no image writer for files ending in '." + suffix + "'");
  }
}

} // namespace zorOSG
