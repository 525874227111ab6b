#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace zorTest {

/** A folder for one test, removed with all that is in it. */
class TemporaryFolder {
public:
  TemporaryFolder() : m_path((std::filesystem::temp_directory_path() / "zor_test_XXXXXX").string()) {
    if (!mkdtemp(m_path.data())) {
      throw std::runtime_error("cannot make a temporary folder");
    }
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TemporaryFolder(TemporaryFolder const&) = delete;
  TemporaryFolder& operator=(TemporaryFolder const&) = delete;

  std::string file(std::string const& name) const { return m_path + "/" + name; }
  std::string const& path() const { return m_path; }
  bool isEmpty() const { return std::filesystem::is_empty(m_path); }

private:
  std::string m_path;
};

} // namespace zorTest
