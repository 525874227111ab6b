#include <zorIO/ResourcePath.h>

#include <zorIO/Environment.h>
#include <zorUtil/StringUtil.h>

#include <filesystem>
#include <stdexcept>

namespace zorIO {

namespace {
namespace fs = std::filesystem;

bool isThere(fs::path const& path) {
  std::error_code ignored; // what can't be looked at does not exist for us
  return fs::exists(path, ignored);
}

zor::String expandHome(zor::String const& name) {
  if (name == "~" || name.starts_with("~/")) {
    return Environment::getVariable("HOME", "~") + name.substr(1);
  }
  return name;
}
} // namespace

void ResourcePath::add(zor::String const& folder) {
  if (!folder.empty() && !m_folders.contains(folder)) {
    m_folders.push_back(folder);
  }
}

void ResourcePath::addFirst(zor::String const& folder) {
  if (!folder.empty()) {
    zor::String const copy(folder); // may be an element of the list
    remove(copy);
    m_folders.insert(m_folders.begin(), copy);
  }
}

void ResourcePath::addList(zor::String const& folders) {
  for (zor::String const& folder : zorUtil::split(folders, ':')) {
    add(folder);
  }
}

bool ResourcePath::remove(zor::String const& folder) {
  auto const found = m_folders.find(folder);
  if (found == m_folders.end()) {
    return false;
  }
  m_folders.erase(found);
  return true;
}

void ResourcePath::clear() {
  m_folders.clear();
}

zor::String ResourcePath::find(zor::String const& filename) const {
  if (filename.empty()) {
    return {};
  }
  fs::path const file(expandHome(filename));
  if (isThere(file)) {
    return file.string();
  }
  for (zor::String const& folder : m_folders) {
    fs::path const candidate = fs::path(expandHome(folder)) / file;
    if (file.is_relative() && isThere(candidate)) {
      return candidate.string();
    }
  }
  return {};
}

zor::String ResourcePath::require(zor::String const& filename) const {
  zor::String const path = find(filename);
  if (!path.empty()) {
    return path;
  }
  zor::String searched = "the working folder";
  for (zor::String const& folder : m_folders) {
    searched += ", " + folder;
  }
  throw std::runtime_error("can't find the file \"" + filename + "\"; searched in " + searched);
}

} // namespace zorIO
