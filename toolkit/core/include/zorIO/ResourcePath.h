#pragma once

#include <zor/Types.h>
#include <zor/Vector.h>

namespace zorIO {

/** Ordered list of folders in which files are searched. */
class ResourcePath {
public:
  /** Searches a folder after all others; one that is on the list keeps its place. An empty name is ignored.
   */
  void add(zor::String const& folder);

  /** Searches a folder before all others; one that is on the list moves to the front. An empty name is
   * ignored. */
  void addFirst(zor::String const& folder);

  /** Adds the folders of a list separated by colons, each after all others. */
  void addList(zor::String const& folders);

  /** \param folder - the folder to take off the list \return true if it was there */
  bool remove(zor::String const& folder);

  /** Takes all folders off the list. */
  void clear();

  /** \return the folders in the order of search */
  zor::Vector<zor::String> const& getFolders() const { return m_folders; }

  /**
   * Searches a file: an absolute name is taken as it is; any other is tried from the working folder, then
   * from each folder of the list. "~" and "~/" at the start mean the home folder.
   * \param filename - name of a file or folder, may contain folders
   * \return path of the file, or an empty text if there is none
   */
  zor::String find(zor::String const& filename) const;

  /** As find(). \throws std::runtime_error that names the file and the folders searched if there is none */
  zor::String require(zor::String const& filename) const;

private:
  zor::Vector<zor::String> m_folders;
};

} // namespace zorIO
