#include "zorStream/FileAccess.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorStream {

namespace {

[[noreturn]] void fail(char const* what, std::string const& filename, int error) {
  throw std::runtime_error(std::string(what) + " '" + filename + "': " + std::strerror(error));
}

/** An open file. */
class Descriptor {
public:
  Descriptor(char const* what, std::string const& filename, int descriptor)
      : m_what(what), m_filename(filename), m_descriptor(descriptor) {
    if (descriptor < 0)
      fail(what, filename, errno);
  }
  ~Descriptor() {
    if (m_descriptor >= 0)
      ::close(m_descriptor);
  }
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;

  int get() const { return m_descriptor; }

  std::string readAll() const {
    std::string bytes;
    char block[65536];
    for (;;) {
      ssize_t const count = ::read(m_descriptor, block, sizeof block);
      if (count < 0 && errno != EINTR)
        fail(m_what, m_filename, errno);
      if (count == 0)
        return bytes;
      if (count > 0)
        bytes.append(block, static_cast<std::size_t>(count));
    }
  }

  void writeAll(std::string const& bytes) const {
    std::size_t written = 0;
    while (written < bytes.size()) {
      ssize_t const count = ::write(m_descriptor, bytes.data() + written, bytes.size() - written);
      if (count < 0 && errno != EINTR)
        fail(m_what, m_filename, errno);
      written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
  }

  void flush() const {
    if (::fsync(m_descriptor) != 0 && errno != EINVAL &&
        errno != EROFS) // pipes and the like have nothing to flush
      fail(m_what, m_filename, errno);
  }

  void close() {
    int const descriptor = m_descriptor;
    m_descriptor = -1;
    if (::close(descriptor) != 0 && errno != EINTR)
      fail(m_what, m_filename, errno);
  }

private:
  char const* m_what;
  std::string const& m_filename;
  int m_descriptor;
};

/** A file beside another, which is gone at the end unless it has taken the other's place. */
class TemporaryFile {
public:
  TemporaryFile(std::string const& target, mode_t mode)
      : m_target(target), m_name(target + ".XXXXXX"), m_file(WHAT, target, ::mkstemp(m_name.data())) {
    ::fchmod(m_file.get(), mode);
  }
  ~TemporaryFile() {
    if (!m_name.empty())
      ::unlink(m_name.c_str());
  }
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;

  void write(std::string const& bytes) {
    m_file.writeAll(bytes);
    m_file.flush();
    m_file.close();
  }

  void takePlace() {
    if (::rename(m_name.c_str(), m_target.c_str()) != 0)
      fail(WHAT, m_target, errno);
    m_name.clear();
  }

  static constexpr char const* WHAT = "cannot write";

private:
  std::string const& m_target;
  std::string m_name;
  Descriptor m_file;
};

// The name survives a loss of power only when its folder has been written, too.
void flushFolder(std::string const& filename) {
  std::filesystem::path const folder = std::filesystem::path(filename).parent_path();
  int const descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0)
    return;
  ::fsync(descriptor);
  ::close(descriptor);
}

// Also those that lead to files which are not there yet.
std::string followLinks(std::string const& filename) {
  constexpr int MOST = 40;
  std::filesystem::path path = filename;
  std::error_code error;
  for (int i = 0; i < MOST && std::filesystem::is_symlink(path, error); ++i)
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  return path.string();
}

mode_t usualMode() {
  mode_t const mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

} // namespace

std::string readBytes(std::string const& filename) {
  Descriptor const file("cannot read", filename, ::open(filename.c_str(), O_RDONLY | O_CLOEXEC));
  return file.readAll();
}

void writeBytes(std::string const& filename, std::string const& bytes) {
  std::string const target = followLinks(filename);
  struct stat present{};
  bool const exists = ::stat(target.c_str(), &present) == 0;
  if (exists && S_ISDIR(present.st_mode))
    fail(TemporaryFile::WHAT, filename, EISDIR);
  if (exists && !S_ISREG(present.st_mode)) {
    Descriptor file(TemporaryFile::WHAT, filename, ::open(target.c_str(), O_WRONLY | O_CLOEXEC));
    file.writeAll(bytes);
    file.flush();
    file.close();
    return;
  }
  if (exists && ::access(target.c_str(), W_OK) != 0) // a file that is protected stays
    fail(TemporaryFile::WHAT, filename, errno);
  TemporaryFile temporary(target, exists ? present.st_mode & 07777 : usualMode());
  temporary.write(bytes);
  temporary.takePlace();
  flushFolder(target);
}

} // namespace zorStream
