#pragma once

#include <zor/Referenced.h>
#include <zor/Types.h>
#include <zorPython/ScriptValue.h>

namespace zorPython {

/** A script file that has been run: its names as a Python module. Made by ScriptManager::loadScript(). */
class Script : public zor::Referenced {
public:
  /** \return the path of the file */
  zor::String const& getPath() const { return m_path; }

  /** \return the script's module */
  ScriptValue const& getModule() const { return m_module; }

  /** \return true if the script has a callable of that name */
  bool hasFunction(zor::String const& name) const;

  /** \return the value of a name of the script; no value if there is none */
  ScriptValue getAttribute(zor::String const& name) const;

protected:
  ~Script() override;

private:
  friend class ScriptManager;
  Script(zor::String const& path, ScriptValue module);

  zor::String m_path;
  ScriptValue m_module;
};

} // namespace zorPython
