#include "PythonReference.h"

#include <zorPython/Script.h>
#include <zorPython/ScriptManager.h>

namespace zorPython {

Script::Script(zor::String const& path, ScriptValue module) : m_path(path), m_module(std::move(module)) {}

Script::~Script() = default;

bool Script::hasFunction(zor::String const& name) const {
  ScriptValue const value = getAttribute(name);
  ScriptManager::PyGILGuard const guard;
  return guard.isHeld() && value.isValid() && PyCallable_Check(value.get());
}

ScriptValue Script::getAttribute(zor::String const& name) const {
  ScriptManager::PyGILGuard const guard;
  if (!guard.isHeld() || !m_module.isValid()) {
    return {};
  }
  PendingErrorGuard const pending;
  PythonReference const key = fromText(name);
  return ScriptValue::fromNewReference(key ? PyObject_GetAttr(m_module.get(), key.get()) : nullptr);
}

} // namespace zorPython
