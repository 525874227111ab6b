#pragma once

#include <zor/Types.h>

#include <filesystem>
#include <map>
#include <set>
#include <vector>

namespace zorPython {

/**
 * Knows which modules scripts have brought in from their own folders, so that a script that is run anew gets
 * them as they are now. Used with the interpreter lock held.
 */
class ScriptModules {
public:
  /// The run of a script: forgets its modules at the beginning, and notes those it imports until the end.
  class Run {
  public:
    Run(ScriptModules& modules, std::filesystem::path const& script);
    ~Run();
    Run(Run const&) = delete;
    Run& operator=(Run const&) = delete;

  private:
    ScriptModules& m_modules;
    std::filesystem::path m_script;
    std::set<zor::String> m_before;
  };

  /** \return the script and the files of its modules, those of earlier runs included */
  std::vector<zor::String> filesOf(std::filesystem::path const& script) const;

private:
  std::map<std::filesystem::path, std::map<zor::String, zor::String>>
      m_files; // of scripts: of modules by name
};

} // namespace zorPython
