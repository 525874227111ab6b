#pragma once

#include <map>
#include <string>

namespace zorModel {

/** Finds the files that a robot description names. */
class FileFinder {
public:
  /**
   * \param folder - where relative names start; empty for the working folder
   * \param packages - folders of packages by name
   */
  FileFinder(std::string folder, std::map<std::string, std::string> const& packages)
      : m_folder(std::move(folder)), m_packages(packages) {}

  /** \param name - a path, or one that begins with package://, model:// or file://
   * \return path of the file \throws std::runtime_error that tells where it was sought */
  std::string find(std::string const& name) const;

private:
  std::string inPackage(std::string const& package, std::string const& rest) const;
  std::string relative(std::string const& name) const;

  std::string m_folder;
  std::map<std::string, std::string> const& m_packages;
};

} // namespace zorModel
