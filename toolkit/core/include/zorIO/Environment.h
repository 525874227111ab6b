#pragma once

#include <zorIO/ResourcePath.h>

namespace zorIO {

/** What the process knows of its surroundings. Its resource path starts with the folders of `ZOR_FILE_PATH`.
 */
class Environment {
public:
  Environment(Environment const&) = delete;
  Environment& operator=(Environment const&) = delete;

  /** \return the one of the process */
  static Environment& instance();

  /** \return the folders in which resource files are searched; change them while no other thread searches */
  ResourcePath& getFilePath() { return m_filePath; }

  /** \param filename - see ResourcePath::find() \return path of the file, or an empty text */
  zor::String find(zor::String const& filename) const { return m_filePath.find(filename); }

  /** \param name - of an environment variable \return its value, or fallback if it is not set */
  static zor::String getVariable(zor::String const& name, zor::String const& fallback = zor::String());

private:
  Environment();
  ~Environment() = default;

  ResourcePath m_filePath;
};

} // namespace zorIO
