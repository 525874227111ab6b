#include "urdf/FileFinder.h"

#include <filesystem>
#include <stdexcept>

#include <zorIO/Environment.h>

namespace zorModel {

namespace {

namespace fs = std::filesystem;

bool takePrefix(std::string& text, std::string const& prefix) {
  if (!text.starts_with(prefix))
    return false;
  text.erase(0, prefix.size());
  return true;
}

bool isThere(fs::path const& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

} // namespace

std::string FileFinder::find(std::string const& name) const {
  std::string rest = name;
  std::string path;
  if (takePrefix(rest, "package://") || takePrefix(rest, "model://")) {
    std::size_t const slash = rest.find('/');
    path = slash == std::string::npos ? "" : inPackage(rest.substr(0, slash), rest.substr(slash + 1));
  } else if (takePrefix(rest, "file://")) {
    path = isThere(rest) ? rest : "";
  } else {
    path = relative(rest);
  }
  if (path.empty())
    throw std::runtime_error("no file \"" + name + "\", sought from \"" +
                             (m_folder.empty() ? "." : m_folder) +
                             "\" and along the resource path; setPackageFolder tells where a package lies");
  return path;
}

std::string FileFinder::inPackage(std::string const& package, std::string const& rest) const {
  if (auto const told = m_packages.find(package); told != m_packages.end()) {
    fs::path const path = fs::path(told->second) / rest;
    return isThere(path) ? path.string() : "";
  }
  std::error_code ignored;
  fs::path folder = fs::absolute(m_folder.empty() ? "." : m_folder, ignored).lexically_normal();
  for (; !folder.empty(); folder = folder.parent_path()) {
    if (folder.filename() == package && isThere(folder / rest))
      return (folder / rest).string();
    if (isThere(folder / package / rest))
      return (folder / package / rest).string();
    if (folder == folder.root_path())
      break;
  }
  return zorIO::Environment::instance().find(package + "/" + rest);
}

std::string FileFinder::relative(std::string const& name) const {
  fs::path const path = fs::path(m_folder) / name; // an absolute name stays
  return !name.empty() && isThere(path) ? path.string() : zorIO::Environment::instance().find(name);
}

} // namespace zorModel
